// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <ctime>
#include <QtGlobal>

namespace velun::test {

/// Sets the time zone of this process, such as "Asia/Seoul".
inline void setTimeZone(const char* name) {
  qputenv("TZ", name);
  tzset();
}

}  // namespace velun::test
