// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"

#include <QDate>
#include <QString>

namespace velun {

/// The calendar day of an instant in the user's time zone.
QDate localDay(Instant instant);

/// The section for a session that started at `startedAt`, by calendar days before `today`: "Today",
/// "Yesterday", "Previous 7 Days", "Previous 30 Days", or its month and year. A start in the future
/// belongs to today.
QString sectionTitle(Instant startedAt, const QDate& today);

}  // namespace velun
