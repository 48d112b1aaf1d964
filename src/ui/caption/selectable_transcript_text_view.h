// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/bottom_pinned_scroll_view.h"

#include <functional>
#include <memory>
#include <vector>

class QMenu;

namespace velun {

class PendingIndicator;

/// The text of a transcript: can be selected, copied and searched, not edited. Shows a spinner at
/// each placeholder in view.
class SelectableTranscriptTextView final : public BottomPinnedScrollView {
  Q_OBJECT

 public:
  SelectableTranscriptTextView(QTextDocument& document, TranscriptLayout& layout,
                               QWidget* parent = nullptr);

  /// From the press of a mouse button until its release.
  bool isSelectingText() const { return isSelectingText_; }
  bool hasSelection() const { return textCursor().hasSelection(); }
  void clearSelection();

  /// White text on the dark panel, without a scroll bar; otherwise the desktop's own look.
  void setCaptionStyle(bool captionStyle);

  /// Makes the empty menus for `contextMenu`; without it they look as the desktop's.
  void setMenuMaker(std::function<std::unique_ptr<QMenu>()> makeMenu);
  /// What a click with the other button opens.
  std::unique_ptr<QMenu> contextMenu();

  /// Makes a spinner for each placeholder in view and puts it in its place.
  void updatePendingIndicators();
  /// The spinners in view, from the top down.
  const std::vector<PendingIndicator*>& pendingIndicators() const { return pendingIndicators_; }

 Q_SIGNALS:
  /// The selection changed or the mouse was released.
  void selectionSettled();
  void findRequested();

 protected:
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void scrollContentsBy(int dx, int dy) override;
  void resizeEvent(QResizeEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  bool viewportEvent(QEvent* event) override;

 private:
  void endSelecting();
  void positionPendingIndicators();

  TranscriptLayout& layout_;
  std::vector<PendingIndicator*> pendingIndicators_;
  std::function<std::unique_ptr<QMenu>()> makeMenu_;
  bool isSelectingText_ = false;
};

}  // namespace velun
