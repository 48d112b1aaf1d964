// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QTextCursor>
#include <QTextEdit>
#include <QTimer>

namespace velun {

class TranscriptDocument;
class TranscriptLayout;

/// A scrolling text that, when resized, keeps its end in view if it was there, and otherwise the
/// text at the top of the view. Lays out the visible part at once and the rest when idle.
class BottomPinnedScrollView : public QTextEdit {
  Q_OBJECT

 public:
  /// `document` must outlive the view.
  BottomPinnedScrollView(TranscriptDocument& document, QWidget* parent);

  /// Whether the end of the document is no more than `slack` points below the view.
  bool isAtBottom(int slack) const;
  void scrollToEnd();

  /// The height of a line of a text that is scrolled by whole lines, in points; 0: by any amount.
  void setLinePitch(int pitch) { pitch_ = pitch; }

  /// Whether a line that the top of the view cuts is hidden, so that nothing is seen that cannot be
  /// read. Where lines are scrolled as a whole, they always are.
  void setHidesCutLines(bool hides) { hidesCutLines_ = hides; }

  /// Calls `change`, then scrolls to the end (`pinned`) or so that the text that was at the top of
  /// the view is there again.
  void keepPlace(bool pinned, const std::function<void()>& change);
  /// The same for a change to a different text: restores the scroll position instead.
  void keepOrigin(bool pinned, const std::function<void()>& change);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void hideEvent(QHideEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void settleAtEnd();
  void settleAt(const QTextCursor& text, int above);
  bool layOutInView();
  void updateFade();
  void layOutRest();

  TranscriptDocument& document_;
  TranscriptLayout& layout_;
  QTimer rest_;
  int pitch_ = 0;
  bool hidesCutLines_ = false;
  // Turns of the wheel that make no whole line yet.
  double turned_ = 0;
  bool isBehind_ = false;
  bool isSettling_ = false;
};

}  // namespace velun
