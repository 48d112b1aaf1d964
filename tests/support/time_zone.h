// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <ctime>
#include <QtGlobal>

namespace velun::test {

/// Moves this process to a zone of the tz database, as "Asia/Seoul".
inline void setTimeZone(const char* name) {
  qputenv("TZ", name);
  tzset();
}

}  // namespace velun::test
