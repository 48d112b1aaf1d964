// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/linux/helper/recognizer_settings.h"
#include "platform/speech/linux/neural/helper_process.h"

#include <memory>
#include <mutex>

namespace velun {

/// The helper program with its models loaded; another takes its place when it has ended. For one
/// worker thread.
class ConfiguredHelper {
 public:
  ConfiguredHelper(QString program, RecognizerSettings settings);

  /// Starts a helper, in place of one that is there, and waits until its models are loaded. Throws
  /// `HelperEnded`.
  void start();

  /// Ends it.
  void end();

  /// Whether there is one, alive or not.
  bool isThere() const { return process_ != nullptr; }
  /// The one that is there.
  HelperProcess& process() const { return *process_; }

  /// For good: what waits for the helper, now or later, throws `HelperEnded` soon. Any thread.
  void cancel();
  /// Any thread.
  bool isCancelled() const;

 private:
  void replace(std::unique_ptr<HelperProcess> process);

  const QString program_;
  const RecognizerSettings settings_;
  /// Guards the change of process against `cancel`.
  mutable std::mutex mutex_;
  bool isCancelled_ = false;  // guarded by mutex_
  std::unique_ptr<HelperProcess> process_;
};

}  // namespace velun
