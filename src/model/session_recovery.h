// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// Puts right what a power loss or a kill has left in a sessions folder: a session file without
/// valid contents is replaced by its synced copy (see `SyncedCopy`), and copies that are no longer
/// needed are removed, as are unfinished writes. A file that is replaced is kept with ".damaged"
/// after its name, unless it is empty. Files of running programs stay as they are. Any thread.
void recoverSessions(const QString& folder);

}  // namespace velun
