// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/model_archive.h"

#include "platform/speech/helper/file_sums.h"

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <csignal>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <stdexcept>
#include <unistd.h>

namespace velun {

namespace {

/// Far above any model of libvosk for live recognition.
constexpr int kMaxEntries = 1000;
constexpr std::int64_t kMaxBytes = 2'000'000'000;
/// Acoustic models and graphs compress to about half. What grows more is no model.
constexpr std::int64_t kMaxGrowth = 20;

const auto kPrefix = QStringLiteral("unpacked-");

struct FreeArchive {
  void operator()(archive* reader) const { archive_read_free(reader); }
};
using Reader = std::unique_ptr<archive, FreeArchive>;

[[noreturn]] void refuse(const char* why) {
  throw std::runtime_error(std::string("the model's archive ") + why);
}

Reader open(const QString& path) {
  constexpr std::size_t kBlock = 1 << 18;
  Reader reader(archive_read_new());
  // Not every filter that libarchive knows: for some it starts an external program.
  archive_read_support_filter_gzip(reader.get());
  archive_read_support_filter_bzip2(reader.get());
  archive_read_support_filter_xz(reader.get());
  archive_read_support_filter_zstd(reader.get());
  archive_read_support_format_tar(reader.get());
  archive_read_support_format_zip(reader.get());
  if (archive_read_open_filename(reader.get(), QFile::encodeName(path).constData(), kBlock) !=
      ARCHIVE_OK) {
    refuse("cannot be read");
  }
  return reader;
}

/// The entry's path below the folder; throws if it leaves it.
QString safePath(archive_entry* entry) {
  const QString path = QString::fromUtf8(archive_entry_pathname_utf8(entry));
  const QString clean = QDir::cleanPath(path);
  const bool isInside = !clean.isEmpty() && !clean.startsWith(u'/') && clean != ".." &&
                        !clean.startsWith("../") && !clean.contains(QChar(0));
  if (!isInside) refuse("points outside its folder");
  return clean;
}

/// Returns the number of bytes.
std::int64_t writeFile(archive* reader, const QString& path, std::int64_t room) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly)) refuse("cannot be unpacked");
  QByteArray block(1 << 18, Qt::Uninitialized);
  std::int64_t bytes = 0;
  while (true) {
    const la_ssize_t count =
        archive_read_data(reader, block.data(), static_cast<std::size_t>(block.size()));
    if (count < 0) refuse("is damaged");
    if (count == 0) return bytes;
    bytes += count;
    if (bytes > room) refuse("is too large when unpacked");
    if (file.write(block.constData(), count) != count || !file.flush()) {
      refuse("cannot be unpacked");
    }
  }
}

void unpackAll(const QString& path, const QDir& folder) {
  const Reader reader = open(path);
  std::int64_t room = std::min<std::int64_t>(kMaxBytes, kMaxGrowth * QFileInfo(path).size());
  int entries = 0;
  archive_entry* entry = nullptr;
  int answer = ARCHIVE_OK;
  while ((answer = archive_read_next_header(reader.get(), &entry)) == ARCHIVE_OK ||
         answer == ARCHIVE_WARN) {
    if (++entries > kMaxEntries) refuse("has too many files");
    const QString name = safePath(entry);
    const auto type = archive_entry_filetype(entry);
    if (type == AE_IFDIR) {
      folder.mkpath(name);
    } else if (type == AE_IFREG && !archive_entry_hardlink(entry)) {
      folder.mkpath(QFileInfo(name).path());
      room -= writeFile(reader.get(), folder.filePath(name), room);
    } else {
      refuse("has something that is no file");
    }
  }
  if (answer != ARCHIVE_EOF) refuse("is damaged");
}

bool isAlive(const QString& processId) {
  bool isNumber = false;
  const int id = processId.toInt(&isNumber);
  return isNumber && id > 0 && ::kill(id, 0) == 0;
}

/// Deletes what processes that were killed have left. Folders are named after the process.
void removeLeftovers(const QDir& parent) {
  for (const QString& name : parent.entryList({kPrefix + '*'}, QDir::Dirs)) {
    const QString processId = name.section(u'-', 1, 1);
    if (!isAlive(processId)) QDir(parent.filePath(name)).removeRecursively();
  }
}

}  // namespace

ModelArchive::ModelArchive(const QString& path, const QByteArray& sha256) {
  checkFile(path, sha256);
  const QDir parent = QFileInfo(path).dir();
  removeLeftovers(parent);
  unpacked_ = std::make_unique<QTemporaryDir>(
      parent.filePath(QString("%1%2-XXXXXX").arg(kPrefix).arg(::getpid())));
  if (!unpacked_->isValid()) refuse("cannot be unpacked");
  unpackAll(path, QDir(unpacked_->path()));
}

QString ModelArchive::folder() const {
  const QDir all(unpacked_->path());
  const QStringList names = all.entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  const bool isInFolder = names.size() == 1 && QFileInfo(all.filePath(names.first())).isDir();
  return isInFolder ? all.filePath(names.first()) : all.path();
}

}  // namespace velun
