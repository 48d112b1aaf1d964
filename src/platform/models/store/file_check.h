// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <QByteArray>
#include <QString>
#include <stop_token>

namespace velun {

/// The SHA-256 of a file's contents in lower-case hexadecimal; empty when it cannot be read. Throws
/// `Cancelled`. Any thread.
QByteArray sha256OfFile(const QString& path, const std::stop_token& stop);

/// Whether the file has that size and hash; the size is looked at first. A size of 0 stands for
/// any, an empty hash for any.
bool isFile(const QString& path, std::int64_t bytes, const QByteArray& sha256,
            const std::stop_token& stop);

/// Puts the file where `to` says, replacing what is there, after its contents reached the disk: a
/// power cut leaves the old file or the whole new one. Throws `Failure`.
void moveIntoPlace(const QString& from, const QString& to);

}  // namespace velun
