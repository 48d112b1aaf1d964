// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/main_task.h"

#include "platform/foundation/failure.h"

#include <QMetaObject>

namespace velun {

namespace {

QCoro::Task<> runReporting(std::function<QCoro::Task<>()> body) {
  try {
    QCoro::Task<> task = body();
    co_await task;
  } catch (const std::exception& error) {
    const QString description = descriptionOf(error);
    qWarning("A task ended with an unexpected error: %s", qUtf8Printable(description));
  }
}

}  // namespace

void startTask(QObject* context, std::function<QCoro::Task<>()> body) {
  QMetaObject::invokeMethod(
      context, [body = std::move(body)] { runReporting(body); }, Qt::QueuedConnection);
}

}  // namespace velun
