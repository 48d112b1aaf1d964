// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/translation_worker.h"

namespace velun {

TranslationWorker::TranslationWorker()
    : thread_([this](const std::stop_token& stop) { run(stop); }) {}

TranslationWorker::~TranslationWorker() {
  thread_.request_stop();
  thread_.join();
}

void TranslationWorker::post(std::function<void()> job) {
  {
    const std::lock_guard guard(lock_);
    jobs_.push_back(std::move(job));
  }
  changed_.notify_one();
}

void TranslationWorker::run(const std::stop_token& stop) {
  while (true) {
    std::function<void()> job;
    {
      std::unique_lock guard(lock_);
      if (!changed_.wait(guard, stop, [this] { return !jobs_.empty(); })) return;
      job = std::move(jobs_.front());
      jobs_.pop_front();
    }
    job();
  }
}

}  // namespace velun
