// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace velun {

/// Replaces a file completely or not at all: writes a temporary file beside it and renames it, so
/// that a crash or a full disk never leaves a partial file. Every name that the file system accepts
/// can be written. A new file has mode 0600; an existing one keeps its mode, and symbolic links are
/// followed. With `flush` the bytes are on the disk when this returns; without, a power failure can
/// restore the old contents. Throws `FileError`; the old file is unchanged then. Any thread.
void writeFileAtomically(const QString& path, const QByteArray& bytes, bool flush);

/// Removes temporary files that killed writers have left in `folder`, but not those of running
/// writers. Any thread.
void removeAbandonedWrites(const QString& folder);

}  // namespace velun
