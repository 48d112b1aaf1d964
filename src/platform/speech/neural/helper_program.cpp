// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/neural/helper_program.h"

#include <mutex>
#include <system_error>
#include <vector>

namespace velun {

struct HelperProgram::Shared {
  struct Running {
    RecognizerSettings settings;
    std::weak_ptr<HelperProcess::Program> program;
  };

  std::mutex mutex;
  std::vector<Running> running;  ///< guarded by mutex; some may have ended
};

HelperProgram::HelperProgram(const QString& path)
    : path_(path), shared_(std::make_shared<Shared>()) {}

std::unique_ptr<HelperProcess> HelperProgram::connect(const RecognizerSettings& settings,
                                                      std::chrono::milliseconds timeout,
                                                      bool isAlone) const {
  std::unique_ptr<HelperProcess> process;
  // Starting a process takes a millisecond. Its models are loaded after that.
  if (isAlone) {
    process = std::make_unique<HelperProcess>(path_, timeout);
  } else {
    const std::lock_guard lock(shared_->mutex);
    std::erase_if(shared_->running, [](const auto& each) { return each.program.expired(); });
    for (const Shared::Running& each : shared_->running) {
      if (each.settings == settings) process = HelperProcess::join(each.program.lock(), timeout);
      if (process) break;
    }
    if (!process) {
      process = std::make_unique<HelperProcess>(path_, timeout);
      shared_->running.push_back({settings, process->program()});
    }
  }
  process->send(RecognizerMessage::Kind::configure, settings.toJson());
  return process;
}

}  // namespace velun
