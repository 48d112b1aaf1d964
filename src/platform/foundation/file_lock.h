// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/file_descriptor.h"

namespace velun {

/// Locks a file or folder until its last descriptor is closed, unless another program has locked
/// it. False, with errno set, if it did not work: EWOULDBLOCK for another program's lock; some file
/// systems have no locks. Any thread.
bool lock(const FileDescriptor& file);

/// Waits for another program's lock. False if it has held it for a second: it may hold it for ever.
/// True without a lock on file systems that have none. Not the main thread.
bool waitForLock(const FileDescriptor& file);

}  // namespace velun
