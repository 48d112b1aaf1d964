// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/settle.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/transcript_samples.h"
#include "ui/caption/transcript_view.h"

#include <QScrollBar>
#include <QTextCursor>
#include <QTextDocument>
#include <utility>

namespace velun::test {

inline constexpr TranscriptChange kAdded{.lines = TranscriptChange::Lines::added};

/// A view of a session’s transcript, as in the panel.
struct TranscriptStage {
  TranscriptStage() {
    inputs.session = &session;
    inputs.followsLatest = true;
    inputs.captionStyle = true;
    inputs.language = "ko";
    view.resize(400, 200);
    view.show();
  }
  void addLines(int count) {
    for (int i = 0; i < count; ++i) {
      session.lines.push_back(lineOf(QStringLiteral("Line %1 of many.").arg(i)));
    }
  }
  void update(const TranscriptChange& change = {}) {
    view.update(inputs, change);
    settle();
  }
  QString text() const { return view.textView().document()->toPlainText(); }
  QScrollBar* bar() const { return view.textView().verticalScrollBar(); }
  int toEnd() const { return bar()->maximum() - bar()->value(); }
  /// The block of a line near the top of the view, and its y position.
  std::pair<int, int> reading() const {
    const QTextCursor cursor = view.textView().cursorForPosition(QPoint(30, 60));
    return {cursor.blockNumber(), view.textView().cursorRect(cursor).top()};
  }
  void select(int from, int to) {
    QTextCursor cursor(view.textView().document());
    cursor.setPosition(from);
    cursor.setPosition(to, QTextCursor::KeepAnchor);
    view.textView().setTextCursor(cursor);
  }

  CaptionSession session;
  TranscriptInputs inputs;
  TranscriptView view;
};

}  // namespace velun::test
