// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_store.h"

#include "model/file_error_text.h"
#include "model/session_file/session_file.h"
#include "model/session_file/text_forms.h"
#include "model/session_recovery.h"
#include "platform/foundation/atomic_file.h"
#include "platform/foundation/file_access.h"

#include <cstdio>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

namespace velun {

namespace {

/// The folder that holds the data folders of programs.
QString dataHome() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
}

/// The end of the name of a session's file, such as "_<id>.json".
QString nameEnd(const CaptionSession& session) {
  char id[kIdLength];
  writeId(id, session.id);
  return QLatin1Char('_') + QLatin1String(id, kIdLength) + QStringLiteral(".json");
}

/// The name of a new session's file: its start in local time and its id, such as
/// "2025-03-01_09-05-07_<id>.json".
QString fileName(const CaptionSession& session) {
  const auto started = std::chrono::floor<std::chrono::seconds>(session.startedAt);
  const QDateTime local = QDateTime::fromSecsSinceEpoch(started.time_since_epoch().count());
  return local.toString(QStringLiteral("yyyy-MM-dd_HH-mm-ss")) + nameEnd(session);
}

/// The name under which the session was saved when the time zone was another one; empty if there
/// is no such file.
QString nameInAnotherTimeZone(const QString& folder, const CaptionSession& session) {
  const qsizetype length = fileName(session).size();
  const QStringList newestFirst = QDir(folder).entryList(
      {QLatin1Char('*') + nameEnd(session)}, QDir::Files | QDir::CaseSensitive, QDir::Time);
  for (const QString& name : newestFirst) {
    if (name.size() == length) return name;  // a longer one was named by the user
  }
  return {};
}

/// The session's file. A session keeps the file it has when the time zone changes.
QString pathOf(const QString& folder, const CaptionSession& session) {
  const QString path = folder + QLatin1Char('/') + fileName(session);
  if (QFileInfo::exists(path)) return path;
  const QString earlier = nameInAnotherTimeZone(folder, session);
  return earlier.isEmpty() ? path : folder + QLatin1Char('/') + earlier;
}

}  // namespace

const SessionStore& SessionStore::local() {
  static const SessionStore store{
      QUrl::fromLocalFile(dataHome() + QStringLiteral("/Velun/Sessions")),
      QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
          QStringLiteral("/Velun/sessions.index")};
  return store;
}

void SessionStore::migratePreviousFolder() const {
  if (directory != local().directory) return;
  const QString target = QFileInfo(directory.toLocalFile()).path();
  for (const char* name : {"Parvelo", "OrlanceV2"}) {
    const QString source = QFileInfo(target).path() + QLatin1Char('/') + QLatin1String(name);
    if (!QFileInfo::exists(source) || QFileInfo::exists(target)) continue;
    // A failed move is ignored; the store works with the folder that is there.
    std::rename(QFile::encodeName(source).constData(), QFile::encodeName(target).constData());
  }
}

QUrl SessionStore::save(const CaptionSession& session, SessionEncoder* encoder,
                        const std::function<void(const QString& path)>& protect) const {
  migratePreviousFolder();
  try {
    const QString folder = directory.toLocalFile();
    makePrivateFolder(folder);
    const QString path = pathOf(folder, session);
    if (protect) {
      protect(path);
    } else if (!QFileInfo::exists(path)) {
      // Only for a new session: puts right what killed programs left behind.
      recoverSessions(folder);
    }
    writeFileAtomically(path, encoder ? encoder->encode(session) : encodeSession(session),
                        !protect);
    return QUrl::fromLocalFile(path);
  } catch (const FileError& error) {
    throw SessionError(fileErrorText(error));
  }
}

}  // namespace velun
