// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/listing/listed_session.h"
#include "model/session_store.h"
#include "platform/foundation/file_error.h"

#include <optional>
#include <QList>
#include <QUrl>

namespace velun {

/// The session files of a folder, and others.
struct SessionListing {
  SavedSessions sessions;
  int unreadableCount = 0;
  /// Set when the folder could not be listed.
  std::optional<FileError> failure;
};

/// Lists the sessions of the store and those of `opened`. Entries of `known`, or else of the
/// store's index, whose files have not changed are taken over, so that only the other files are
/// read. Brings the index up to date. Transcripts of an earlier version get the title
/// `legacyTitle`. Any thread.
SessionListing listSessions(const SessionStore& store, const QList<QUrl>& opened,
                            const QString& legacyTitle, const SavedSessions& known,
                            Instant now = currentInstant());

}  // namespace velun
