// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"

#include <optional>
#include <QUuid>
#include <string_view>

namespace velun {

// The texts of identifiers and times in a session file. Any thread.

inline constexpr std::size_t kIdLength = 36;
inline constexpr std::size_t kTimeLength = 20;

/// Writes `kIdLength` characters, upper case, and returns the end.
char* writeId(char* out, const QUuid& id);

/// Writes `kTimeLength` characters, such as "2025-03-01T09:05:07Z", and returns the end. Fractions
/// of a second are dropped; times outside the years 0 to 9999 become the first or last time of
/// that range.
char* writeTime(char* out, Instant time);

/// Parses an identifier in canonical form, in upper or lower case.
std::optional<QUuid> parseId(std::string_view text);

/// Parses a time in exactly the form above; the day must exist.
std::optional<Instant> parseTime(std::string_view text);

}  // namespace velun
