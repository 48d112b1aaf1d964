// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/bottom_pinned_scroll_view.h"

#include <functional>
#include <memory>
#include <vector>

class QMenu;

namespace velun {

class PendingIndicator;
struct PanelStyle;

/// The text of a transcript, which can be selected, copied and searched but not edited. Shows a
/// spinner at each visible placeholder, and a caret only while it is used with the keyboard: one
/// that blinks disturbs who reads.
class SelectableTranscriptTextView final : public BottomPinnedScrollView {
  Q_OBJECT

 public:
  /// `document` must outlive the view.
  explicit SelectableTranscriptTextView(TranscriptDocument& document, QWidget* parent = nullptr);

  /// True from the press of the left mouse button until its release.
  bool isSelectingText() const { return isSelectingText_; }
  bool hasSelection() const { return textCursor().hasSelection(); }
  void clearSelection();

  /// Switches to the look of a panel of this style, without a scroll bar; null: the desktop's look.
  void setPanelStyle(const PanelStyle* style);

  /// Sets the factory of empty menus for contextMenu(); by default they have the desktop's look.
  void setMenuMaker(std::function<std::unique_ptr<QMenu>()> makeMenu);
  /// Creates the menu that a right click opens.
  std::unique_ptr<QMenu> contextMenu();

  /// Paints a bar beside these paragraphs, which replaces the one before; no paragraphs: none.
  void setMarkedBlocks(int first, int count);

  /// Recreates the spinners of the visible placeholders.
  void updatePendingIndicators();
  /// The visible spinners, from the top down.
  const std::vector<PendingIndicator*>& pendingIndicators() const { return pendingIndicators_; }

 Q_SIGNALS:
  /// The selection changed or the mouse was released.
  void selectionSettled();
  void findRequested();
  /// The left mouse button was clicked at `position` of the viewport, and selected nothing.
  void clicked(const QPoint& position);
  /// The menu of a right click opens at `position` of the viewport; more can be added to it.
  void menuOpening(QMenu& menu, const QPoint& position);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void resizeEvent(QResizeEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  bool viewportEvent(QEvent* event) override;
  /// Plain text: the captions' own colour is white, which cannot be read on paper.
  QMimeData* createMimeDataFromSelection() const override;

 private:
  void setHasCaret(bool has);
  void endSelecting();
  void positionPendingIndicators();
  /// The bar beside the marked paragraphs, in points of the viewport; empty without any.
  QRect markRect() const;

  TranscriptLayout& layout_;
  std::vector<PendingIndicator*> pendingIndicators_;
  std::function<std::unique_ptr<QMenu>()> makeMenu_;
  bool isSelectingText_ = false;
  QPoint pressedAt_;
  int firstMarked_ = 0;
  int markedCount_ = 0;
};

}  // namespace velun
