// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QCoroTask>
#include <QObject>

namespace velun {

/// Starts a task that is not awaited: calls `body` from the main event loop, unless `context` is
/// destroyed before. `body` must be an ordinary function or lambda that calls a coroutine, not a
/// lambda coroutine with captures, whose closure would be destroyed first. An exception that leaves
/// the task is a programming error and is logged as a warning.
void startTask(QObject* context, std::function<QCoro::Task<>()> body);

}  // namespace velun
