// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/listing/listed_session.h"
#include "model/session_store.h"

#include <memory>

namespace velun {

/// The transcript of one listed session, the last that was asked for. Main thread.
class ShownSession {
 public:
  /// Reads the file of `entry` unless it was the last one; null if there is no entry or its file
  /// cannot be read.
  std::shared_ptr<const SavedSession> of(const std::shared_ptr<const ListedSession>& entry);

  /// Keeps a transcript that is already there.
  void keep(std::shared_ptr<const ListedSession> entry, CaptionSession session);

 private:
  std::shared_ptr<const ListedSession> entry_;
  std::shared_ptr<const SavedSession> session_;
};

}  // namespace velun
