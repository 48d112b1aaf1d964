// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/listing/session_index.h"

#include "model/listing/index_entry.h"
#include "model/session_files.h"
#include "platform/foundation/atomic_file.h"
#include "platform/foundation/file_access.h"
#include "platform/foundation/file_descriptor.h"
#include "platform/foundation/file_error.h"
#include "platform/foundation/file_lock.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fcntl.h>
#include <QCryptographicHash>
#include <QDataStream>
#include <QFile>
#include <QFileInfo>
#include <sys/stat.h>
#include <unistd.h>

namespace velun {

namespace {

/// In the byte order of the machine, like the signatures: an index of the other order is refused.
/// Ends with the version, which changes with what is written and with how it is computed.
constexpr std::uint32_t kMagic = 0x5E'1D'EC'01;
constexpr auto kHash = QCryptographicHash::Sha1;
constexpr qsizetype kHashLength = 20;
constexpr qsizetype kStateAt = sizeof kMagic;
constexpr qsizetype kChecksumAt = kStateAt + kHashLength;
constexpr qsizetype kHeadLength = kChecksumAt + kHashLength;
/// Of an index; that of 200,000 sessions is smaller.
constexpr qint64 kMaxSize = qint64{1} << 29;

/// Stands for the indexed versions of the files.
QByteArray stateOf(const SavedSessions& sessions, const QString& folder) {
  QCryptographicHash hash(kHash);
  hash.addData(folder.toUtf8());
  for (const auto& session : sessions) {
    hash.addData(session->url.toEncoded());
    hash.addData({reinterpret_cast<const char*>(&*session->stamp), sizeof *session->stamp});
  }
  return hash.result();
}

QByteArray checksumOf(const QByteArray& bytes) {
  QCryptographicHash hash(kHash);
  hash.addData(QByteArrayView(bytes).sliced(kStateAt, kHashLength));
  hash.addData(QByteArrayView(bytes).sliced(kHeadLength));
  return hash.result();
}

/// The state in the head of an index; empty without one.
QByteArray storedState(const QString& path) {
  const FileDescriptor file = openRegularFile(path);
  if (!file.isOpen()) return {};
  QByteArray head(kHeadLength, Qt::Uninitialized);
  head.truncate(std::max<ssize_t>(::pread(file.number(), head.data(), kHeadLength, 0), 0));
  const bool isHead =
      head.size() == kHeadLength && std::memcmp(head.constData(), &kMagic, sizeof kMagic) == 0;
  return isHead ? head.sliced(kStateAt, kHashLength) : QByteArray();
}

bool isIndexed(const ListedSession& session, const QString& folder) {
  const QString path = session.url.toLocalFile();
  return session.stamp && !isLegacyFile(path) && QFileInfo(path).path() == folder;
}

SavedSessions indexedOf(const SavedSessions& sessions, const QString& folder) {
  SavedSessions indexed;
  for (const auto& session : sessions) {
    if (isIndexed(*session, folder)) indexed.push_back(session);
  }
  return indexed;
}

/// A file that replaces one keeps its mode, which must not be that of a file for all.
void removeIfShared(const QString& path) {
  struct stat status {};
  const QByteArray name = QFile::encodeName(path);
  const bool isFound = ::lstat(name.constData(), &status) == 0;
  const bool isPrivate = S_ISREG(status.st_mode) && (status.st_mode & (S_IRWXG | S_IRWXO)) == 0;
  if (isFound && !isPrivate) ::unlink(name.constData());
}

}  // namespace

QByteArray encodeIndex(const SavedSessions& sessions, const QString& folder) {
  QByteArray bytes(reinterpret_cast<const char*>(&kMagic), sizeof kMagic);
  bytes.append(stateOf(sessions, folder));
  bytes.append(kHashLength, '\0');
  QDataStream stream(&bytes, QIODevice::Append);
  stream.setVersion(kIndexStreamVersion);
  stream << folder << quint32(sessions.size());
  for (const auto& session : sessions) writeEntry(stream, *session);
  putIndexChecksum(bytes);
  return bytes;
}

void putIndexChecksum(QByteArray& bytes) {
  if (bytes.size() < kHeadLength) return;
  bytes.replace(kChecksumAt, kHashLength, checksumOf(bytes));
}

std::optional<SavedSessions> decodeIndex(const QByteArray& bytes, const QString& folder) {
  if (bytes.size() < kHeadLength) return std::nullopt;
  if (std::memcmp(bytes.constData(), &kMagic, sizeof kMagic) != 0) return std::nullopt;
  if (bytes.sliced(kChecksumAt, kHashLength) != checksumOf(bytes)) return std::nullopt;
  QDataStream stream(bytes);
  stream.setVersion(kIndexStreamVersion);
  stream.skipRawData(static_cast<int>(kHeadLength));
  QString indexed;
  quint32 count = 0;
  stream >> indexed >> count;
  if (indexed != folder) return std::nullopt;
  SavedSessions sessions;
  for (quint32 i = 0; i < count; ++i) {
    std::optional<ListedSession> session = readEntry(stream, folder);
    if (!session) return std::nullopt;
    sessions.push_back(std::make_shared<const ListedSession>(std::move(*session)));
  }
  return stream.atEnd() ? std::optional(std::move(sessions)) : std::nullopt;
}

SavedSessions SessionIndex::read() const {
  if (path.isEmpty()) return {};
  try {
    if (auto sessions = decodeIndex(readWholeFile(path, kMaxSize), folder)) return *sessions;
  } catch (const FileError& error) {
    if (error.code().value() == ENOENT) return {};
  }
  // Its head may still say that it needs not be replaced.
  QFile::remove(path);
  return {};
}

void SessionIndex::write(const SavedSessions& sessions, Instant now) const {
  if (path.isEmpty()) return;
  SavedSessions indexed = indexedOf(sessions, folder);
  try {
    const QString place = QFileInfo(path).path();
    makePrivateFolder(place);
    // The index is compared, the files are looked at and the index is replaced in one: of two
    // programs, the later one knows of every deletion.
    const FileDescriptor locked(
        ::open(QFile::encodeName(place).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!waitForLock(locked)) {
      // Without an index nothing of a deleted session is left.
      QFile::remove(path);
      return;
    }
    // What a killed writer has left may tell of a session that was deleted since.
    removeAbandonedWrites(place);
    if (storedState(path) == stateOf(indexed, folder)) return;
    std::erase_if(indexed, [now](const auto& session) {
      return stampOf(session->url.toLocalFile(), now) != session->stamp;
    });
    removeIfShared(path);
    writeFileAtomically(path, encodeIndex(indexed, folder), false);
  } catch (const FileError&) {
    QFile::remove(path);
  }
}

}  // namespace velun
