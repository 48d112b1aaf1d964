// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

namespace velun::test {

/// One entry of an archive.
struct ArchiveEntry {
  QString path;
  QByteArray contents;
  QString linkTarget;  ///< if not empty, the entry is a symbolic link
};

QByteArray gzipped(const QByteArray& contents);
QByteArray zstdCompressed(const QByteArray& contents);
QByteArray tarBzip2(const std::vector<ArchiveEntry>& entries);

QByteArray zipped(const std::vector<ArchiveEntry>& entries);

QByteArray sha256(const QByteArray& contents);

/// Bytes that cannot be compressed, always the same for a seed.
QByteArray noise(int count, unsigned seed);

}  // namespace velun::test
