// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace velun {

/// Replaces a file whole or not at all: the bytes are written beside it and renamed over it, so
/// that neither a crash nor a full disk leaves a part of it. A new file is for the user alone
/// (0600); an existing one keeps its mode, and a symbolic link stays one. With `flush` the bytes
/// have reached the disk when it returns; without, only a loss of power can bring back the old
/// contents. Throws `FileError`; the old file is whole then. Any thread.
void writeFileAtomically(const QString& path, const QByteArray& bytes, bool flush);

/// Removes what writers that were killed left beside files in `folder`; never the work of a
/// writer that still runs. Any thread.
void removeAbandonedWrites(const QString& folder);

}  // namespace velun
