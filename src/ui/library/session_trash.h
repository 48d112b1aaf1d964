// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>

namespace velun {

/// Moves a session file to the user's trash. Throws `Failure` when that cannot be done: the
/// file is where it was, or there is none. Main thread.
void moveSessionToTrash(const QUrl& url);

}  // namespace velun
