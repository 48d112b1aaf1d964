// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/session_file/session_encoder.h"

#include <functional>
#include <QString>
#include <QUrl>
#include <vector>

namespace velun {

/// A session file that could be read. Identified by `url`.
struct SavedSession {
  QUrl url;
  CaptionSession session;
};

/// The folder of saved session files. Its only state is where things are; every operation
/// works on the file system in the calling thread and throws `SessionError` on failure. Any
/// thread, as long as saves of one session do not overlap.
struct SessionStore {
  /// The result of a listing.
  struct Listing {
    /// In the order of `isListedBefore`.
    std::vector<SavedSession> sessions;
    int unreadableCount = 0;
  };

  /// The sessions folder; need not exist yet.
  QUrl directory;
  /// The path of the index of that folder, see `SessionIndex`; empty for none.
  QString indexFile = {};

  /// The user's own store: "Velun/Sessions" in the data folder of the user.
  static const SessionStore& local();

  /// Moves the data folder of an earlier version into place, once; only for the user's own store.
  void migratePreviousFolder() const;

  /// Writes the session atomically and returns its file. The file is named after the start in local
  /// time and the id; a session that has a file keeps it when the time zone changes. With an
  /// `encoder` that has the bytes of the unchanged lines it is faster; the file is the same. Waits
  /// until the bytes are on the disk, except with `protect`, which is called with the path before
  /// the file is written and has to protect it against a power loss.
  QUrl save(const CaptionSession& session, SessionEncoder* encoder = nullptr,
            const std::function<void(const QString& path)>& protect = {}) const;

  /// Reads a session file or a Markdown transcript of an earlier version, from anywhere.
  CaptionSession read(const QUrl& url) const;

  /// Every readable session of the folder and how many could not be read.
  Listing savedSessions() const;

  /// The same without texts in the interface language, for any thread: transcripts of an earlier
  /// version get the title `legacyTitle`, and a folder that cannot be listed throws `FileError`.
  Listing list(const QString& legacyTitle) const;
};

/// Whether the file `left` of a session comes before `right` in a listing: newest first, equal
/// starts by file name, then by folder. A total order, so that reading a file again never moves it.
bool isListedBefore(Instant leftStart, const QUrl& left, Instant rightStart, const QUrl& right);

}  // namespace velun
