// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_interruption.h"
#include "platform/audio/linux/pipewire_connection.h"
#include "platform/audio/linux/pipewire_loop.h"
#include "platform/audio/linux/pipewire_stream.h"
#include "platform/audio/linux/sound_watch.h"
#include "platform/foundation/clock.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <QObject>
#include <string>

namespace velun {

/// Captures the default output or microphone and keeps at it: follows the default when it changes,
/// goes and comes back, and makes stream and connection anew when the session manager or the sound
/// server was restarted. Main thread, except for the buffers.
class PipeWireCapture {
 public:
  enum class Kind { output, microphone };
  using BufferHandler = PipeWireStream::BufferHandler;

  /// How long a lost sound server is waited for.
  static constexpr std::chrono::seconds patience{30};

  /// `clock` outlives the capture. After the last sound, an output is kept awake for `wakefulness`:
  /// one that is asleep swallows the beginning of what is played next. `onInterruption` may destroy
  /// the capture.
  PipeWireCapture(Kind kind, Clock& clock, std::chrono::milliseconds wakefulness,
                  AudioInterruptionHandler onInterruption);
  ~PipeWireCapture();
  PipeWireCapture(const PipeWireCapture&) = delete;
  PipeWireCapture& operator=(const PipeWireCapture&) = delete;

  /// Connects and learns the devices; harmless when open. Returns 0 or a negative errno.
  int open();
  /// Stops and disconnects; no buffer arrives any more.
  void close();
  bool isOpen() const { return loop_ != nullptr; }

  /// The default device, waited for a moment in case the session manager is just starting. For a
  /// microphone none where only a sink's monitor is offered.
  std::optional<AudioDevice> defaultDevice();
  std::optional<AudioDevice> device(std::uint32_t id);
  /// A format that is not known has rate 0.
  AudioFormat formatOf(const AudioDevice& device);

  /// Captures under the node name `nodeName`. `onBuffer` is called on the capture thread until
  /// `stop` returns. Returns 0 or a negative errno. After `open`.
  int start(const std::string& nodeName, BufferHandler onBuffer);
  void stop();

 private:
  using Report = std::optional<AudioInterruption>;

  void postReview();
  void review();
  // Each of these is called under the loop's lock and says what there is to report.
  Report reviewConnection();
  Report reviewStream();
  Report beginInterruption();
  Report endInterruption();
  Report retry();

  void report(const Report& report);
  void reviewWakefulness();
  Report letSleep();
  void endAwakeStream();
  bool reconnect();
  void disconnect();
  int makeStream();
  /// Why the stream there is, if any, is no longer the right one.
  bool isStreamStale() const;
  bool isStreamFed() const;
  const AudioDevice* wantedDevice() const;
  void scheduleReview(std::unique_ptr<ScheduledCall>* call, std::chrono::milliseconds delay,
                      Report (PipeWireCapture::*action)());
  Report beginInterruptionWithoutSession();
  Report relink();

  const Kind kind_;
  Clock& clock_;
  const std::chrono::milliseconds wakefulness_;
  AudioInterruptionHandler onInterruption_;
  /// What calls from the loop's thread are posted to; they die with it.
  QObject context_;
  std::atomic<bool> isReviewPosted_ = false;

  std::string nodeName_;
  BufferHandler onBuffer_;
  const BufferHandler onUnheardBuffer_ = [](const PcmBuffer&) {
  };
  bool isStarted_ = false;
  std::optional<double> interruptedSince_;
  std::unique_ptr<ScheduledCall> retryCall_;
  std::unique_ptr<ScheduledCall> sessionCall_;
  std::unique_ptr<ScheduledCall> relinkCall_;
  std::chrono::milliseconds relinkDelay_{};

  std::unique_ptr<PipeWireLoop> loop_;
  std::unique_ptr<PipeWireConnection> connection_;
  std::unique_ptr<PipeWireStream> stream_;
  std::string streamTarget_;
  SoundWatch sounds_;
  std::unique_ptr<ScheduledCall> sleepCall_;
  /// Captures the same output without listening, so that it stays awake.
  std::unique_ptr<PipeWireStream> awakeStream_;
  int streamSession_ = 0;
};

}  // namespace velun
