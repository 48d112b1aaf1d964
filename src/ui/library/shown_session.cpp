// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/shown_session.h"

#include "model/session_files.h"

#include <utility>

namespace velun {

std::shared_ptr<const SavedSession> ShownSession::of(
    const std::shared_ptr<const ListedSession>& entry) {
  if (entry == entry_) return session_;
  entry_ = entry;
  session_ = nullptr;
  if (!entry) return nullptr;
  try {
    keep(entry, readSessionFile(entry->url.toLocalFile(), entry->summary.title));
  } catch (...) {
    // The next listing says so.
  }
  return session_;
}

void ShownSession::keep(std::shared_ptr<const ListedSession> entry, CaptionSession session) {
  entry_ = std::move(entry);
  session_ = std::make_shared<const SavedSession>(SavedSession{entry_->url, std::move(session)});
}

}  // namespace velun
