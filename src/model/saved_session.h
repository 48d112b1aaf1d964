// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <QUrl>

namespace velun {

/// A session file that could be read. Identified by `url`.
struct SavedSession {
  QUrl url;
  CaptionSession session;
};

}  // namespace velun
