// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>

namespace velun {

/// Asks the user for the title of a session, which is `title` at first. Nullopt when the user
/// cancels. Main thread; runs the event loop meanwhile.
std::optional<QString> askTitle(const QString& title);

}  // namespace velun
