// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "cli/usage.h"

#include <QStringList>

namespace velun {

/// Reads the arguments of `velun` without a command: returns the files to open, as they were given.
/// Throws `UsageError` and `HelpRequested`.
QStringList parseWindowArguments(const QStringList& arguments);

}  // namespace velun
