// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/packed_bytes.h"

#include <archive.h>
#include <archive_entry.h>
#include <QCryptographicHash>
#include <random>

namespace velun::test {

namespace {

constexpr int kRoom = 1 << 16;

/// Writes an archive configured by `configure` to memory.
template <class Configure>
QByteArray written(const std::vector<ArchiveEntry>& entries, Configure configure) {
  qsizetype room = kRoom;
  for (const ArchiveEntry& entry : entries) room += 2 * entry.contents.size() + kRoom;
  QByteArray packed(room, Qt::Uninitialized);
  std::size_t used = 0;
  archive* writer = archive_write_new();
  configure(writer);
  archive_write_set_bytes_in_last_block(writer, 1);
  archive_write_open_memory(writer, packed.data(), static_cast<std::size_t>(room), &used);
  for (const ArchiveEntry& entry : entries) {
    archive_entry* header = archive_entry_new();
    archive_entry_set_pathname(header, entry.path.toUtf8().constData());
    archive_entry_set_perm(header, 0644);
    archive_entry_set_size(header, entry.contents.size());
    archive_entry_set_filetype(header, entry.linkTarget.isEmpty() ? AE_IFREG : AE_IFLNK);
    if (!entry.linkTarget.isEmpty()) {
      archive_entry_set_symlink(header, entry.linkTarget.toUtf8().constData());
    }
    archive_write_header(writer, header);
    archive_write_data(writer, entry.contents.constData(),
                       static_cast<std::size_t>(entry.contents.size()));
    archive_entry_free(header);
  }
  archive_write_close(writer);
  archive_write_free(writer);
  packed.truncate(static_cast<qsizetype>(used));
  return packed;
}

}  // namespace

QByteArray gzipped(const QByteArray& contents) {
  return written({{"data", contents, {}}}, [](archive* writer) {
    archive_write_add_filter_gzip(writer);
    archive_write_set_format_raw(writer);
  });
}

QByteArray zstdCompressed(const QByteArray& contents) {
  return written({{"data", contents, {}}}, [](archive* writer) {
    archive_write_add_filter_zstd(writer);
    archive_write_set_format_raw(writer);
  });
}

QByteArray tarBzip2(const std::vector<ArchiveEntry>& entries) {
  return written(entries, [](archive* writer) {
    archive_write_add_filter_bzip2(writer);
    archive_write_set_format_pax_restricted(writer);
  });
}

QByteArray zipped(const std::vector<ArchiveEntry>& entries) {
  return written(entries, [](archive* writer) { archive_write_set_format_zip(writer); });
}

QByteArray sha256(const QByteArray& contents) {
  return QCryptographicHash::hash(contents, QCryptographicHash::Sha256).toHex();
}

QByteArray noise(int count, unsigned seed) {
  std::mt19937 random(seed);
  QByteArray bytes(count, Qt::Uninitialized);
  for (char& byte : bytes) byte = static_cast<char>(random());
  return bytes;
}

}  // namespace velun::test
