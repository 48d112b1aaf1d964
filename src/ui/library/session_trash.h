// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>

namespace velun {

/// Moves a session file to the user's trash. Throws `Failure`, with the file where it was, when
/// that cannot be done. Main thread.
void moveSessionToTrash(const QUrl& url);

}  // namespace velun
