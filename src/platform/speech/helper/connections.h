// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/file_descriptor.h"

#include <QString>

namespace velun {

/// Serves a first connection and every one that `control` brings, each on a thread of its own, so
/// that none waits for another. When the program has ended, ends this process at once, also while
/// models are loaded.
[[noreturn]] void serveConnections(FileDescriptor input, FileDescriptor output,
                                   FileDescriptor control, const QString& programFolder);

}  // namespace velun
