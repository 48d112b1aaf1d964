// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/instant.h"

#include <optional>
#include <QByteArray>
#include <QString>

namespace velun {

/// The bytes of a regular file, with `padding` bytes of capacity behind them. Throws `FileError`:
/// what the system said, EFBIG for more than `limit` bytes, EINVAL for anything but a file (a pipe
/// or a device would block or never end). Any thread.
QByteArray readWholeFile(const QString& path, qint64 limit, qsizetype padding = 0);

/// When the file was created; none where the file system does not record it. Any thread.
std::optional<Instant> creationTime(const QString& path);

/// Creates the folder and its missing parents, each for the user alone (0700). Throws `FileError`.
void makePrivateFolder(const QString& path);

}  // namespace velun
