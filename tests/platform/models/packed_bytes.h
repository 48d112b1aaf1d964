// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

namespace velun::test {

/// One entry of an archive that a test makes.
struct ArchiveEntry {
  QString path;
  QByteArray contents;
  QString linkTarget;  ///< makes it a symbolic link when it is not empty
};

QByteArray gzipped(const QByteArray& contents);
QByteArray zstdCompressed(const QByteArray& contents);
QByteArray tarBzip2(const std::vector<ArchiveEntry>& entries);

QByteArray sha256(const QByteArray& contents);

/// Bytes that do not compress, the same for the same seed.
QByteArray noise(int count, unsigned seed);

}  // namespace velun::test
