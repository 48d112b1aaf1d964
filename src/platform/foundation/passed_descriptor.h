// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/file_descriptor.h"

#include <optional>

namespace velun {

/// Passes a copy of `passed` over `socket`, a local stream socket, with one byte. Does not wait.
/// False, with errno set, if it could not be sent.
bool passDescriptor(const FileDescriptor& socket, const FileDescriptor& passed);

/// Waits for the next descriptor that `passDescriptor` sends; bytes without one are skipped.
/// Nullopt when the other side has closed its socket, or when reading failed.
std::optional<FileDescriptor> receiveDescriptor(const FileDescriptor& socket);

}  // namespace velun
