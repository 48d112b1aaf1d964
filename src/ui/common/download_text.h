// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <QString>

namespace velun {

struct ModelState;

/// A size in megabytes, rounded, at least one: "134 MB".
QString megabytesText(std::int64_t bytes);

/// How far a download is, such as "45 of 134 MB · 3.2 MB/s · 28 s left"; the reason if it failed;
/// empty before its start.
QString downloadText(const ModelState& state);

}  // namespace velun
