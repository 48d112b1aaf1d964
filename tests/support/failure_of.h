// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/failure.h"

#include <QCoroTask>

namespace velun::test {

inline QCoro::Task<QString> failureTextOf(QCoro::Task<> task) {
  try {
    co_await task;
  } catch (const Cancelled&) {
    co_return QString("cancelled");
  } catch (const Failure& failure) {
    const QString& text = failure.errorDescription();
    co_return text;
  }
  co_return QString();
}

/// Runs the task to its end. Returns the text of its failure, "cancelled", or nothing.
inline QString failureOf(QCoro::Task<> task) {
  return QCoro::waitFor(failureTextOf(std::move(task)));
}

}  // namespace velun::test
