// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/panel_style.h"
#include "ui/caption/caption_colors.h"
#include "ui/caption/panel_drag.h"

#include <array>
#include <optional>
#include <QWidget>

namespace velun {

class DesktopPlatform;
class PanelEdge;
class PanelToolTip;

/// The caption window: frameless, translucent and rounded, optionally above other windows. Does not
/// take the focus when it is shown, only when it is clicked. Can be resized at its edges.
class CaptionPanel final : public QWidget {
  Q_OBJECT

 public:
  /// `desktop` must outlive the panel.
  explicit CaptionPanel(DesktopPlatform& desktop);

  /// Takes ownership of the content, which is aligned to the panel's bottom and keeps its own
  /// height, so that a lower panel clips it at the top.
  void setContent(QWidget* content);
  /// The content's height in points.
  void setContentHeight(int height);
  int contentHeight() const { return contentHeight_; }

  /// `opaque` disables translucency. The background is the style's.
  void setLook(const PanelStyle& style, const CaptionColors& colors, bool opaque);

  /// Shows the panel in front of the other windows, without activating it.
  void orderFront(bool keepOnTop);
  /// Changes the level; immediately when the panel is shown.
  void setKeepOnTop(bool keepOnTop);

  /// Whether the pointer goes through the panel to the windows beneath.
  void setClickThrough(bool isThrough);

  /// Whether the panel's geometry is its real one, and its own to choose. Otherwise it is an
  /// ordinary window on Wayland, whose place only the compositor knows.
  bool hasPlace() const;

  /// Starts moving the panel with the mouse.
  void beginMove(const QPoint& globalPosition);
  /// Whether the panel follows the pointer, which may be beside it for a moment.
  bool isDragged() const { return drag_.isFollowing(); }

 Q_SIGNALS:
  void hoveringChanged(bool hovering);
  /// The user is about to move or resize the panel with the mouse, from its frame after the signal.
  void dragBegins();
  /// The panel was moved or resized.
  void frameChanged();
  /// The user has moved the panel with the mouse.
  void moved();
  /// The window manager closed the panel.
  void closed();

 protected:
  bool event(QEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  void addEdges();
  void arrange();
  /// Returns to the last place of its own.
  void restorePlace();
  void tellFrame();
  /// Updates the blurred region, or the shape of the window.
  void updateRegions();
  void beginDrag(Qt::Edges edges, const QPoint& globalPosition);
  void endDrag();
  QColor fill() const;

  DesktopPlatform& desktop_;
  QWidget* content_ = nullptr;
  int contentHeight_ = 0;
  PanelStyle style_;
  CaptionColors colors_;
  bool opaque_ = false;
  bool isClickThrough_ = false;
  bool wasExposed_ = false;
  bool keepsOnTop_ = false;
  /// Its last place of its own, while it has none.
  std::optional<QRect> place_;
  std::array<PanelEdge*, 8> edges_{};
  PanelDrag drag_;
  PanelToolTip* toolTip_;
};

}  // namespace velun
