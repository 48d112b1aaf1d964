// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>

namespace velun {

/// Moves a file to the user's trash. Returns the system's error text if that failed, and the file
/// is unchanged; none on success. Main thread.
std::optional<QString> moveToTrash(const QString& path);

}  // namespace velun
