// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "platform/foundation/file_descriptor.h"

#include <optional>
#include <QByteArray>
#include <QString>
#include <QUrl>

namespace velun {

/// Opens a regular file for reading. Not open, with errno set, if that failed: the error of the
/// system, EISDIR for a folder, EINVAL for other kinds of file (a pipe or a device would block or
/// never end). Any thread.
FileDescriptor openRegularFile(const QString& path);

/// Reads a regular file, with `padding` bytes of extra capacity behind it. Throws `FileError`: what
/// `openRegularFile` says, EFBIG for more than `limit` bytes. Any thread.
QByteArray readWholeFile(const QString& path, qint64 limit, qsizetype padding = 0);

/// The path of a local file without links. Of a file that does not exist, the links of its folder
/// are resolved; of one whose folder does not exist either, none. Any thread.
QString canonicalPath(const QUrl& file);

/// The creation time of a file; none if the file system does not record it. Any thread.
std::optional<Instant> creationTime(const QString& path);

/// Creates a folder and its missing parents with mode 0700. Throws `FileError`.
void makePrivateFolder(const QString& path);

}  // namespace velun
