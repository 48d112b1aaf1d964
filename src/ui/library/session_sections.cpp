// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/session_sections.h"

#include "language/localization.h"
#include "platform/foundation/date_formats.h"

#include <QDateTime>

namespace velun {

QDate localDay(Instant instant) {
  const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(instant);
  return QDateTime::fromMSecsSinceEpoch(milliseconds.time_since_epoch().count()).date();
}

QString sectionTitle(Instant startedAt, const QDate& today) {
  const qint64 days = localDay(startedAt).daysTo(today);
  if (days <= 0) return L("Today", "오늘");
  if (days == 1) return L("Yesterday", "어제");
  if (days < 7) return L("Previous 7 Days", "지난 7일");
  if (days < 30) return L("Previous 30 Days", "지난 30일");
  return monthAndYear(startedAt, Localization::shared().locale());
}

}  // namespace velun
