// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/file_descriptor.h"

#include <QByteArray>
#include <QString>

namespace velun {

/// A file that is only in memory and ends with its descriptor. Throws `std::runtime_error`.
FileDescriptor memoryFile(const char* name, const QByteArray& content);

/// A path by which this process can open the file while the descriptor is open.
QString pathOfDescriptor(const FileDescriptor& descriptor);

}  // namespace velun
