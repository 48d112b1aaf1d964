// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/caption_colors.h"
#include "ui/caption/panel_drag.h"

#include <array>
#include <QWidget>

namespace velun {

class DesktopPlatform;
class PanelEdge;

/// The caption window: frameless, translucent and rounded, above other windows when asked. Does not
/// take the keyboard when it is shown but can be given it by a click. Resized at its edges.
class CaptionPanel final : public QWidget {
  Q_OBJECT

 public:
  /// `desktop` must outlive the panel.
  explicit CaptionPanel(DesktopPlatform& desktop);

  /// Takes over the content. It keeps its own height at the panel's bottom, so that a lower panel
  /// cuts it off at the top.
  void setContent(QWidget* content);
  /// The content's height in points.
  void setContentHeight(int height);
  int contentHeight() const { return contentHeight_; }

  /// `opaque`: nothing behind the panel shows through, whatever the desktop could do.
  void setColors(const CaptionColors& colors, bool opaque);

  /// Shows the panel in front of the other windows, without taking the keyboard.
  void orderFront(bool keepOnTop);
  /// Changes the level, at once when it is shown.
  void setKeepOnTop(bool keepOnTop);

  /// Begins to move the panel with the mouse.
  void beginMove(const QPoint& globalPosition);

 Q_SIGNALS:
  void hoveringChanged(bool hovering);
  /// It was moved or resized.
  void frameChanged();
  /// The window manager closed it.
  void closed();

 protected:
  bool event(QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void addEdges();
  void arrange();
  /// The region that is blurred, or that the window is cut to.
  void updateRegions();
  QColor fill() const;

  DesktopPlatform& desktop_;
  QWidget* content_ = nullptr;
  int contentHeight_ = 0;
  CaptionColors colors_;
  bool opaque_ = false;
  std::array<PanelEdge*, 8> edges_{};
  PanelDrag drag_;
};

}  // namespace velun
