// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <QByteArray>
#include <QString>
#include <stop_token>

namespace velun {

/// The SHA-256 of a file in lower-case hexadecimal. Throws `FileError` if it cannot be read, and
/// `Cancelled`. Any thread.
QByteArray sha256OfFile(const QString& path, const std::stop_token& stop);

/// Whether a file has this size and hash. The size is compared first. 0 matches any size, and an
/// empty hash any content. Throws like `sha256OfFile`.
bool isFile(const QString& path, std::int64_t bytes, const QByteArray& sha256,
            const std::stop_token& stop);

}  // namespace velun
