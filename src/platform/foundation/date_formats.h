// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"

#include <QString>

namespace velun {

/// Hours, minutes and seconds in the 12- or 24-hour format of `locale` ("en", "ko") and the user's
/// time zone. English has U+202F before AM and PM.
QString timeOfDay(Instant instant, const QString& locale);

/// The long date with the time of day, such as "March 1, 2025 at 6:04:58 PM".
QString longDateAndTime(Instant instant, const QString& locale);

/// The month in full and the year, such as "March 2025".
QString monthAndYear(Instant instant, const QString& locale);

/// The ISO 8601 calendar date in UTC, such as "2025-03-01".
QString isoDate(Instant instant);

}  // namespace velun
