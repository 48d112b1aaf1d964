// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/file_descriptor.h"

#include <QString>

namespace velun {

/// Serves the messages of one connection until it ends, and closes it. Returns the exit code of
/// `RecognizerService`.
int serveConnection(FileDescriptor input, FileDescriptor output, const QString& programFolder);

/// Serves every connection that `control` brings, each on a thread of its own, so that none waits
/// for another. When the program has ended, ends this process at once, also while others load.
[[noreturn]] void serveConnections(FileDescriptor control, const QString& programFolder);

}  // namespace velun
