// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QTextCursor>
#include <QTextEdit>
#include <QTimer>

namespace velun {

class TranscriptLayout;

/// A scrolling text that keeps its bottom in view when it is resized, and otherwise the text that
/// is being read. It has what is in view laid out, and the rest done bit by bit when idle.
class BottomPinnedScrollView : public QTextEdit {
  Q_OBJECT

 public:
  /// `document` is laid out by `layout`; both outlive the view's use of them.
  BottomPinnedScrollView(QTextDocument& document, TranscriptLayout& layout, QWidget* parent);

  /// Whether the end of the document is no more than `slack` points below the view.
  bool isAtBottom(int slack) const;
  void scrollToEnd();

  /// Changes the document or the view's size, then scrolls to the end (`pinned`) or back to where
  /// the same text stands at the same height.
  void keepPlace(bool pinned, const std::function<void()>& change);
  /// The same for a document that becomes another one: scrolls back to the same height.
  void keepOrigin(bool pinned, const std::function<void()>& change);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void hideEvent(QHideEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void settleAtEnd();
  void settleAt(const QTextCursor& text, int above);
  bool layOutInView();
  void layOutRest();

  TranscriptLayout& layout_;
  QTimer rest_;
  bool isBehind_ = false;
  bool isSettling_ = false;
};

}  // namespace velun
