// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/transcript_content.h"
#include "ui/caption/caption_appearance.h"

#include <optional>
#include <QSet>
#include <QString>
#include <QUuid>

namespace velun {

struct CaptionSession;

/// Everything that decides what a transcript view shows.
struct TranscriptInputs {
  /// Only its id and lines are read. Stays where it is until other inputs are given or the view is
  /// gone; null is an empty session.
  const CaptionSession* session = nullptr;
  /// The unfinished caption; empty when there is none.
  QString volatileText;
  /// Of the body text, in points.
  double fontSize = CaptionAppearance::defaultFontSize;
  TranscriptContent content = TranscriptContent::both;
  /// The translations to show; an absent language is all of them.
  std::optional<QString> language;
  /// Each line gets its time, input and language, and an empty line after it.
  bool showsMetadata = false;
  /// The view stays at the newest text.
  bool followsLatest = false;
  /// White on the dark panel; otherwise the desktop's own colours.
  bool captionStyle = false;
  /// Lines whose translation is still awaited.
  QSet<QUuid> pendingTranslationIDs;
  /// A draft is under way that the content leaves out.
  bool showsPendingInput = false;
  /// Each new value scrolls to the end.
  int jumpToLatest = 0;
};

/// What of a session may differ from what a view was given before.
struct TranscriptChange {
  enum class Lines {
    /// None but lines added at the end.
    added,
    /// The one at `index`, and lines added at the end.
    one,
    /// Any.
    all,
  };
  Lines lines = Lines::all;
  int index = 0;
};

}  // namespace velun
