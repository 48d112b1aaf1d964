// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/transcript_content.h"
#include "settings/panel_style.h"
#include "ui/caption/caption_appearance.h"
#include "ui/caption/line_label.h"

#include <optional>
#include <QSet>
#include <QString>
#include <QUuid>
#include <vector>

namespace velun {

struct CaptionSession;

/// An unfinished text, shown after the lines.
struct TranscriptDraft {
  QString text;
  LineLabel label = {};
};

/// Everything that decides what a transcript view shows.
struct TranscriptInputs {
  /// Only its id and lines are read. Must stay valid until other inputs are set or the view is
  /// destroyed; null means an empty session.
  const CaptionSession* session = nullptr;
  /// In the order in which they are shown; those without text are left out.
  std::vector<TranscriptDraft> drafts;
  LineLabeller labelOf = {};
  /// The size of the body text, in points.
  double fontSize = CaptionAppearance::defaultFontSize;
  TranscriptContent content = TranscriptContent::both;
  /// The language of the translations to show; nullopt shows all.
  std::optional<QString> language;
  /// Shows each line's time, input and language above it, and an empty line after it.
  bool showsMetadata = false;
  /// Keeps the newest text in view.
  bool followsLatest = false;
  /// The look of the panel (`style`) instead of the desktop's.
  bool captionStyle = false;
  PanelStyle style;
  /// In the panel: all lines have the same height and the view shows whole lines only.
  bool wholeLines = false;
  /// The lines whose translation is pending.
  QSet<QUuid> pendingTranslationIDs;
  /// Shows the placeholder of a draft that `content` hides.
  bool showsPendingInput = false;
  /// Each new value scrolls to the end.
  int jumpToLatest = 0;
};

/// The lines of a session that may have changed since the view's last update.
struct TranscriptChange {
  enum class Lines {
    /// Only lines appended at the end.
    added,
    /// The line at `index`, and lines appended at the end.
    one,
    /// The line at `index` and all after it: one was inserted there.
    from,
    /// Any line.
    all,
  };
  Lines lines = Lines::all;
  int index = 0;

  bool operator==(const TranscriptChange&) const = default;
};

}  // namespace velun
