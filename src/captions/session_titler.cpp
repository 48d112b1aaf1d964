// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/session_titler.h"

#include "captions/caption_view_model.h"
#include "model/session_work.h"
#include "settings/library_settings.h"

namespace velun {

SessionTitler::SessionTitler(CaptionViewModel& model, const LibrarySettings& settings)
    : model_(model), settings_(settings) {
  connect(&model, &CaptionViewModel::sessionChanged, this, &SessionTitler::update);
}

void SessionTitler::update() {
  const CaptionSession& session = model_.session();
  const bool isUntitled = session.title == defaultSessionTitle();
  if (!settings_.titlesFromFirstSentence() || !isUntitled || session.lines.empty()) return;
  model_.setTitle(titleFromSentence(session.lines.front().text));
}

}  // namespace velun
