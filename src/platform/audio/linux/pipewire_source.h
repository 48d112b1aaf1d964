// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_source.h"
#include "platform/audio/audio_target.h"
#include "platform/audio/linux/capture_failure.h"
#include "platform/audio/linux/pipewire_capture.h"
#include "platform/audio/linux/sound_watch.h"
#include "platform/foundation/clock.h"
#include "platform/foundation/one_shot.h"

#include <chrono>
#include <functional>
#include <optional>
#include <variant>

namespace velun {

/// Captures an output, an input or programs of PipeWire. A device without an id is the default one,
/// which is followed; one with an id is waited for, and so is a program.
/// Recreates the stream when the device or the session manager returns. Reconnects when PipeWire
/// ends (`reconnect`), and gives up after `kReconnectTimeout`.
class PipeWireSource final : public AudioSource {
  Q_OBJECT

 public:
  /// The time without PipeWire after which the source stops and emits `failed`.
  static constexpr std::chrono::seconds kReconnectTimeout{30};

  /// `clock` and `teardown` must outlive the source. An output is kept from being suspended for
  /// `wakefulness` after the last sound, because a suspended one loses the start of the next sound.
  PipeWireSource(AudioTarget target, Clock& clock, PipeWireTeardown& teardown,
                 std::chrono::milliseconds wakefulness);
  ~PipeWireSource() override;

  QCoro::Task<> start(Handler handler) override;
  void stop() override;

 private:
  enum class Phase { stopped, starting, running };
  /// Emits a signal or reports a failed start. Called after the lock was released.
  using Report = std::function<void()>;

  void begin(Handler handler);
  void failStart(CaptureProblem problem, int status = 0);
  /// Runs `action` under the loop's lock, then its report.
  void review(Report (PipeWireSource::*action)());
  /// Runs `action` under the loop's lock later, unless `*call` is reset before.
  void scheduleReview(std::unique_ptr<ScheduledCall>* call, std::chrono::milliseconds delay,
                      Report (PipeWireSource::*action)());

  // Called under the loop's lock; the returned report runs after its release.
  Report reviewPhase();
  Report reviewStart();
  Report reviewConnection();
  Report reviewStream();
  Report reviewDevice();
  Report becomeRunning();
  Report startWithoutDevice();
  Report failWithoutAnswer();
  Report startFailure(CaptureProblem problem, int status = 0);
  Report beginInterruption();
  Report beginInterruptionWithoutSession();
  Report endInterruption();
  Report reconnect();
  Report relink();
  Report allowSuspend();
  void updateLinks();
  void updateWakefulness();
  void keepAwake(bool isAwake);
  int makeStream();
  bool isStreamStale() const;
  bool isStreamLinked() const;
  bool isTargetThere() const;

  const AudioTarget target_;
  Clock& clock_;
  PipeWireTeardown& teardown_;
  const std::chrono::milliseconds wakefulness_;

  Phase phase_ = Phase::stopped;
  Handler handler_;
  OneShot<std::monostate> started_;
  std::unique_ptr<PipeWireCapture> capture_;
  PipeWireStreamOptions streamOptions_;
  /// The session manager that links the stream.
  int streamSession_ = 0;
  SoundWatch sounds_;
  std::optional<double> interruptedSince_;
  bool isDeviceMissing_ = false;
  std::chrono::milliseconds relinkDelay_{};

  std::unique_ptr<ScheduledCall> startTimeout_;
  std::unique_ptr<ScheduledCall> deviceTimeout_;
  std::unique_ptr<ScheduledCall> reconnectCall_;
  std::unique_ptr<ScheduledCall> sessionTimeout_;
  std::unique_ptr<ScheduledCall> relinkCall_;
  std::unique_ptr<ScheduledCall> suspendCall_;
};

}  // namespace velun
