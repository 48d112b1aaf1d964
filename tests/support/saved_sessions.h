// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/localization.h"
#include "model/listing/session_listing.h"
#include "model/session_files.h"

namespace velun::test {

/// The session of a file. Throws what `readSessionFile` throws.
inline CaptionSession readSession(const QUrl& url) {
  return readSessionFile(url.toLocalFile(), defaultSessionTitle());
}

/// What the library lists in the store's folder, without an index.
inline SessionListing listingOf(const SessionStore& store) {
  return listSessions({store.directory}, {}, defaultSessionTitle(), {});
}

/// The sessions of that listing with their lines. Throws what `readSessionFile` throws.
inline std::vector<SavedSession> savedSessions(const SessionStore& store) {
  std::vector<SavedSession> saved;
  for (const auto& entry : listingOf(store).sessions) {
    saved.push_back({entry->url, readSession(entry->url)});
  }
  return saved;
}

}  // namespace velun::test
