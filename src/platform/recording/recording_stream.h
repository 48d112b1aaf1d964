// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/process_pipeline.h"
#include "platform/recording/recording_format.h"

#include <atomic>
#include <memory>
#include <optional>
#include <QByteArray>
#include <QString>
#include <vector>

namespace velun {

/// The sound of a recording as mono samples at `kSpeechSampleRate`, decoded by velun-decoder: files
/// from anywhere are not read in this process. Blocking, for one worker thread.
class RecordingStream {
 public:
  /// Starts `program`, the installed velun-decoder. Throws `Failure`.
  RecordingStream(const QString& program, const QString& path);

  /// The first call: waits until the recording is open. Throws `Failure`, and `Cancelled` after
  /// `interrupt`.
  void open();

  /// The standard input of this process, as a path for the constructor.
  static QString standardInput();

  /// In seconds; nullopt if the recording does not tell.
  std::optional<double> duration() const;

  /// The next samples; empty at the end. Throws `Failure` when the decoder fails, and `Cancelled`
  /// after `interrupt`.
  std::vector<float> next();

  /// Makes a waiting `next` throw soon, and every later one. Any thread.
  void interrupt();

 private:
  void read(qsizetype count);

  QString name_;
  std::unique_ptr<ProcessPipeline> pipeline_;
  std::atomic<bool> isInterrupted_ = false;
  RecordingHeader header_;
  QByteArray bytes_;  ///< received and not taken yet
};

}  // namespace velun
