// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/session_file/session_encoder.h"
#include "platform/foundation/failure.h"

#include <functional>
#include <QString>
#include <QUrl>

namespace velun {

/// A session could not be saved; with a finished text in the interface language.
class SessionError final : public Failure {
 public:
  using Failure::Failure;
};

/// A session file that could be read. Identified by `url`.
struct SavedSession {
  QUrl url;
  CaptionSession session;
};

/// The folder of saved session files. Its only state is where things are; every operation
/// works on the file system in the calling thread and throws `SessionError` on failure. Any
/// thread, as long as saves of one session do not overlap.
struct SessionStore {
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
};

}  // namespace velun
