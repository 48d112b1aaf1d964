// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/recording/recording_stream.h"
#include "platform/speech/speech_input.h"

#include <memory>
#include <mutex>
#include <optional>
#include <QObject>
#include <thread>

namespace velun {

/// Passes the sound of a recording to a recognizer as fast as that takes it. Main thread.
class RecordingFeed final : public QObject {
  Q_OBJECT

 public:
  /// Starts at once. `program` is the installed velun-decoder.
  RecordingFeed(const QString& program, const QString& path, std::shared_ptr<SpeechInput> input);

  /// Ends the input.
  ~RecordingFeed() override;

  /// How much of the recording was passed on, in seconds. Any thread.
  double position() const { return position_; }

 Q_SIGNALS:
  /// The recording is open; its length in seconds if it tells.
  void opened(std::optional<double> duration);
  /// The last signal: everything was passed on and the input has ended, or `error`, a localized
  /// text, says why the rest could not be read.
  void ended(const std::optional<QString>& error);

 private:
  void run(const QString& program, const QString& path);
  void pass(RecordingStream& stream);
  void setStream(RecordingStream* stream);

  std::shared_ptr<SpeechInput> input_;
  std::atomic<double> position_ = 0;
  std::mutex mutex_;
  RecordingStream* stream_ = nullptr;
  bool isEnding_ = false;
  std::thread thread_;
};

}  // namespace velun
