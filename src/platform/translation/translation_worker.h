// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>

namespace velun {

/// The one thread that translates. Jobs run one after the other in the order in which they were
/// given.
class TranslationWorker {
 public:
  TranslationWorker();

  /// Waits for the jobs given so far. Call them off first: somebody may wait for their answers.
  ~TranslationWorker();

  TranslationWorker(const TranslationWorker&) = delete;
  TranslationWorker& operator=(const TranslationWorker&) = delete;

  /// Any thread. `job` must not throw.
  void post(std::function<void()> job);

 private:
  void run(const std::stop_token& stop);

  std::mutex lock_;
  std::condition_variable_any changed_;
  std::deque<std::function<void()>> jobs_;
  std::jthread thread_;
};

}  // namespace velun
