// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// A time in seconds (0 or more) as "1:02:03"; below an hour "2:03", or "0:02:03" with `hasHours`.
inline QString clockText(double time, bool hasHours) {
  constexpr qlonglong kHour = 3600;
  const auto seconds = static_cast<qlonglong>(time);
  const bool isLong = hasHours || seconds >= kHour;
  const QString ending = QStringLiteral("%1:%2")
                             .arg(seconds / 60 % 60, isLong ? 2 : 1, 10, QLatin1Char('0'))
                             .arg(seconds % 60, 2, 10, QLatin1Char('0'));
  return isLong ? QStringLiteral("%1:%2").arg(seconds / kHour).arg(ending) : ending;
}

}  // namespace velun
