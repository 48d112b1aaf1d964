// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/neural/configured_helper.h"

#include <utility>

namespace velun {

using Kind = RecognizerMessage::Kind;

ConfiguredHelper::ConfiguredHelper(HelperProgram program, RecognizerSettings settings,
                                   std::chrono::milliseconds timeout,
                                   std::chrono::milliseconds loadTimeout)
    : program_(std::move(program)),
      settings_(std::move(settings)),
      timeout_(timeout),
      loadTimeout_(loadTimeout) {}

void ConfiguredHelper::expectRecording() {
  settings_.isRecording = true;
  timeout_ *= kRecordingPatience;
}

void ConfiguredHelper::start() {
  replace(nullptr);
  replace(program_.connect(settings_, timeout_, std::exchange(isAlone_, true)));
  while (process_->receive(loadTimeout_).kind != Kind::ready) {
  }
}

void ConfiguredHelper::end() {
  replace(nullptr);
}

void ConfiguredHelper::replace(std::unique_ptr<HelperProcess> process) {
  const std::lock_guard lock(mutex_);
  process_ = std::move(process);
  if (process_ && isCancelled_) process_->interrupt();
}

void ConfiguredHelper::cancel() {
  const std::lock_guard lock(mutex_);
  isCancelled_ = true;
  if (process_) process_->interrupt();
}

bool ConfiguredHelper::isCancelled() const {
  const std::lock_guard lock(mutex_);
  return isCancelled_;
}

}  // namespace velun
