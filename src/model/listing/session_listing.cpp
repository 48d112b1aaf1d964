// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/listing/session_listing.h"

#include "model/listing/session_index.h"
#include "model/session_files.h"
#include "model/session_recovery.h"
#include "platform/foundation/file_access.h"

#include <algorithm>
#include <QHash>
#include <QSet>

namespace velun {

namespace {

using Entry = std::shared_ptr<const ListedSession>;

class Lister {
 public:
  Lister(const SavedSessions& known, const QString& legacyTitle, Instant now)
      : legacyTitle_(legacyTitle), now_(now) {
    for (const Entry& entry : known) {
      // The title of an earlier transcript depends on the language.
      const QString path = entry->url.toLocalFile();
      if (entry->stamp && !isLegacyFile(path)) known_.insert(path, entry);
    }
  }

  void add(const std::vector<QString>& paths) {
    std::vector<QString> unread;
    // Before the files are read: a change in between makes the stamp old, not the session.
    std::vector<std::optional<FileStamp>> stamps;
    for (const QString& path : paths) {
      const std::optional<FileStamp> stamp = stampOf(path, now_);
      const Entry entry = known_.value(path);
      if (entry && stamp && entry->stamp == stamp) {
        listing.sessions.push_back(entry);
      } else {
        unread.push_back(path);
        stamps.push_back(stamp);
      }
    }
    std::vector<Entry> read(unread.size());
    readSessionFiles(unread, legacyTitle_, {}, [&](std::size_t i, const CaptionSession& session) {
      read[i] = listed(QUrl::fromLocalFile(unread[i]), session, stamps[i]);
    });
    for (Entry& entry : read) {
      if (entry)
        listing.sessions.push_back(std::move(entry));
      else
        ++listing.unreadableCount;
    }
  }

  SessionListing listing;

 private:
  QHash<QString, Entry> known_;
  QString legacyTitle_;
  Instant now_;
};

}  // namespace

SessionListing listSessions(const SessionStore& store, const QList<QUrl>& opened,
                            const QString& legacyTitle, const SavedSessions& known, Instant now) {
  const QString folder = store.directory.toLocalFile();
  const SessionIndex index{store.indexFile, folder};
  Lister lister(known.empty() ? index.read() : known, legacyTitle, now);
  try {
    store.migratePreviousFolder();
    recoverSessions(folder);
    lister.add(sessionFiles(folder));
    index.write(lister.listing.sessions, now);
  } catch (const FileError& error) {
    lister.listing.failure = error;
  }
  if (!opened.isEmpty()) {
    QSet<QString> listed;
    for (const Entry& entry : lister.listing.sessions) listed.insert(canonicalPath(entry->url));
    std::vector<QString> paths;
    for (const QUrl& url : opened) {
      if (!listed.contains(canonicalPath(url))) paths.push_back(url.toLocalFile());
    }
    lister.add(paths);
  }
  std::ranges::stable_sort(lister.listing.sessions, isBefore);
  return std::move(lister.listing);
}

}  // namespace velun
