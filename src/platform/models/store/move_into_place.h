// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// Renames `from` to `to`, replacing it, after its contents are on the disk: a power failure leaves
/// the old file or the complete new one. Throws `Failure`. Any thread.
void moveIntoPlace(const QString& from, const QString& to);

}  // namespace velun
