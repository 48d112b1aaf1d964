// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/instant.h"

#include <optional>
#include <QUuid>
#include <string_view>

namespace velun {

// The written forms of ids and times in a session file. Any thread.

inline constexpr std::size_t kIdLength = 36;
inline constexpr std::size_t kTimeLength = 20;

/// Writes `kIdLength` characters, upper case; gives the end.
char* writeId(char* out, const QUuid& id);

/// Writes `kTimeLength` characters, such as "2025-03-01T09:05:07Z"; fractions are dropped, and
/// years outside 0 to 9999 become the nearest time that the form has. Gives the end.
char* writeTime(char* out, Instant time);

/// The id of its canonical form, in either case; none for any other text.
std::optional<QUuid> idFromText(std::string_view text);

/// The time of exactly the form above, of a day that exists; none for any other text.
std::optional<Instant> timeFromText(std::string_view text);

}  // namespace velun
