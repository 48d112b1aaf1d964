// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>

namespace velun {

/// Moves a session file to the user's trash. Throws `Failure` when the file is missing or cannot be
/// moved; it then stays in place. Main thread.
void moveSessionToTrash(const QUrl& url);

}  // namespace velun
