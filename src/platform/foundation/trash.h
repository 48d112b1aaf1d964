// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>

namespace velun {

/// Moves a file to the user's trash. Gives the system's reason when it could not, with the file
/// where it was; none when it was moved. Main thread.
std::optional<QString> moveToTrash(const QString& path);

}  // namespace velun
