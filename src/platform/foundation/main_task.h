// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QCoroTask>
#include <QObject>

namespace velun {

/// Starts a task that nobody awaits: `body` is called on the next turn of the main event loop,
/// unless `context` is gone by then. `body` must be an ordinary function or lambda that calls a
/// coroutine (never itself a lambda coroutine with captures: its closure would die first).
/// An exception that leaves the task is a programming error and is reported as a warning.
void startTask(QObject* context, std::function<QCoro::Task<>()> body);

}  // namespace velun
