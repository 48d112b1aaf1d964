// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <exception>
#include <memory>
#include <QCoroTask>
#include <QTest>
#include <stdexcept>

namespace velun::test {

/// The outcome of a task; empty while it runs.
struct TaskEnd {
  bool hasEnded = false;
  std::exception_ptr error;
};

inline QCoro::Task<> followTask(QCoro::Task<> task, std::shared_ptr<TaskEnd> end) {
  try {
    co_await task;
  } catch (...) {
    end->error = std::current_exception();
  }
  end->hasEnded = true;
}

/// Runs the event loop until `task` has ended, and rethrows its exception. Unlike QCoro::waitFor it
/// also returns when the task fails.
inline void await(QCoro::Task<> task) {
  const auto end = std::make_shared<TaskEnd>();
  const QCoro::Task<> following = followTask(std::move(task), end);
  if (!QTest::qWaitFor([&] { return end->hasEnded; }, 20'000)) {
    throw std::runtime_error("The task did not end");
  }
  if (end->error) std::rethrow_exception(end->error);
}

}  // namespace velun::test
