// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/store/unpack.h"

#include "platform/models/store/model_store_failures.h"

#include <archive.h>
#include <archive_entry.h>
#include <cerrno>
#include <memory>
#include <QDir>
#include <QFile>
#include <QSet>

namespace velun {

namespace {

struct FreeArchive {
  void operator()(archive* reader) const { archive_read_free(reader); }
};
using Reader = std::unique_ptr<archive, FreeArchive>;

/// Throws the failure for the last error of libarchive, which is an errno value if the system could
/// not read the file.
[[noreturn]] void refuse(archive* reader) {
  const int code = archive_errno(reader);
  switch (code) {
    case EACCES:
    case EMFILE:
    case ENFILE:
    case ENOENT:
    case ENOMEM:
    case ESTALE:
      throw model_failures::unreadable(code);
    default:
      throw model_failures::damaged();
  }
}

Reader openPacked(ModelPacking packing, const QString& path) {
  constexpr std::size_t kBlock = 1 << 18;
  Reader reader(archive_read_new());
  switch (packing) {
    case ModelPacking::archive:
      // Not every filter that libarchive knows: for some it starts an external program.
      archive_read_support_filter_gzip(reader.get());
      archive_read_support_filter_bzip2(reader.get());
      archive_read_support_filter_xz(reader.get());
      archive_read_support_filter_zstd(reader.get());
      archive_read_support_format_tar(reader.get());
      break;
    case ModelPacking::zstd:
      archive_read_support_filter_zstd(reader.get());
      archive_read_support_format_raw(reader.get());
      break;
    case ModelPacking::gzip:
    case ModelPacking::none:
      archive_read_support_filter_gzip(reader.get());
      archive_read_support_format_raw(reader.get());
      break;
  }
  if (archive_read_open_filename(reader.get(), QFile::encodeName(path).constData(), kBlock) !=
      ARCHIVE_OK) {
    refuse(reader.get());
  }
  return reader;
}

void writeEntry(archive* reader, const QString& path, const std::stop_token& stop) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
    throw model_failures::notWritten(file);
  }
  QByteArray block(1 << 18, Qt::Uninitialized);
  while (true) {
    if (stop.stop_requested()) throw Cancelled();
    const la_ssize_t count =
        archive_read_data(reader, block.data(), static_cast<std::size_t>(block.size()));
    if (count < 0) refuse(reader);
    if (count == 0) return;
    if (file.write(block.constData(), count) != count) throw model_failures::notWritten(file);
  }
}

/// Whether the path of an entry stays inside the folder.
bool staysInside(const QString& entry) {
  const QString clean = QDir::cleanPath(entry);
  return !clean.startsWith(u'/') && clean != ".." && !clean.startsWith("../");
}

/// The name of the file of the download that the entry contains; empty if there is none.
QString wantedName(archive_entry* entry, const ModelDownload& download) {
  const QString path = QString::fromUtf8(archive_entry_pathname_utf8(entry));
  if (!staysInside(path)) throw model_failures::damaged();
  if (archive_entry_filetype(entry) != AE_IFREG || archive_entry_hardlink(entry)) return {};
  const QString name = path.section(u'/', -1);
  for (const ModelFile& file : download.files) {
    if (file.name == name) return file.name;
  }
  return {};
}

void unpackArchive(const ModelDownload& download, const QString& packed, const QDir& folder,
                   const std::stop_token& stop) {
  const Reader reader = openPacked(download.packing, packed);
  QSet<QString> found;
  archive_entry* entry = nullptr;
  int answer = ARCHIVE_OK;
  while ((answer = archive_read_next_header(reader.get(), &entry)) == ARCHIVE_OK ||
         answer == ARCHIVE_WARN) {
    if (stop.stop_requested()) throw Cancelled();
    const QString name = wantedName(entry, download);
    if (name.isEmpty()) continue;
    if (found.contains(name)) throw model_failures::damaged();
    writeEntry(reader.get(), folder.filePath(name), stop);
    found.insert(name);
  }
  if (answer != ARCHIVE_EOF) refuse(reader.get());
  if (found.size() != static_cast<qsizetype>(download.files.size())) {
    throw model_failures::damaged();
  }
}

void unpackFile(const ModelDownload& download, const QString& packed, const QDir& folder,
                const std::stop_token& stop) {
  const Reader reader = openPacked(download.packing, packed);
  archive_entry* entry = nullptr;
  if (archive_read_next_header(reader.get(), &entry) != ARCHIVE_OK) refuse(reader.get());
  // Without this, the raw format would accept a file that is not compressed.
  if (archive_filter_count(reader.get()) < 2) throw model_failures::damaged();
  writeEntry(reader.get(), folder.filePath(download.files.front().name), stop);
}

}  // namespace

void unpack(const ModelDownload& download, const QString& packed, const QString& folder,
            const std::stop_token& stop) {
  const QDir target(folder);
  try {
    if (download.packing == ModelPacking::archive) {
      unpackArchive(download, packed, target, stop);
    } else {
      unpackFile(download, packed, target, stop);
    }
  } catch (const Failure&) {
    for (const ModelFile& file : download.files) QFile::remove(target.filePath(file.name));
    throw;
  }
}

}  // namespace velun
