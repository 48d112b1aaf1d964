// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/recognizer_settings.h"
#include "platform/speech/neural/helper_program.h"

#include <memory>
#include <mutex>

namespace velun {

/// The helper program with its models loaded; can be restarted. The process may be shared with
/// others that have the same settings, but not after a restart. For one worker thread.
class ConfiguredHelper {
 public:
  static constexpr int kRecordingPatience = 6;

  /// `timeout` is for everything but loading.
  ConfiguredHelper(HelperProgram program, RecognizerSettings settings,
                   std::chrono::milliseconds timeout = HelperProcess::kDefaultTimeout,
                   std::chrono::milliseconds loadTimeout = HelperProcess::kLoadTimeout);

  /// The audio to come is that of a recording, which is decoded in large pieces, and on a computer
  /// that may be busy with other work: the timeout is `kRecordingPatience` times as long. Before
  /// `start`, once.
  void expectRecording();

  /// The helper failed before: this one is not shared, so that another failure stays here. Before
  /// `start`.
  void standAlone() { isAlone_ = true; }

  /// Starts a helper, after ending the present one, and waits until its models are loaded. Throws
  /// `HelperEnded`.
  void start();

  void end();

  /// Whether a helper was started and not ended by `end`. It may have ended by itself.
  bool isThere() const { return process_ != nullptr; }
  /// Requires `isThere`.
  HelperProcess& process() const { return *process_; }

  /// Makes every running and later operation throw `HelperEnded` soon. Any thread.
  void cancel();
  /// Any thread.
  bool isCancelled() const;

 private:
  void replace(std::unique_ptr<HelperProcess> process);

  const HelperProgram program_;
  RecognizerSettings settings_;
  std::chrono::milliseconds timeout_;
  const std::chrono::milliseconds loadTimeout_;
  /// Guards replacing the process against `cancel`.
  mutable std::mutex mutex_;
  bool isAlone_ = false;
  bool isCancelled_ = false;  // guarded by mutex_
  std::unique_ptr<HelperProcess> process_;
};

}  // namespace velun
