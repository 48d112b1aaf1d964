// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/caption_colors.h"
#include "ui/common/padded_label.h"

class QHelpEvent;

namespace velun {

/// Shows the tool tips of a window and of its menus in the dark look of the caption panel, in place
/// of Qt's. Main thread.
class PanelToolTip final : public PaddedLabel {
  Q_OBJECT

 public:
  /// `window` is the parent and must be a window.
  explicit PanelToolTip(QWidget* window);

  void setColors(const CaptionColors& colors);
  /// Rounded corners need a compositor.
  void setRounded(bool rounded);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  /// The tool tip at the place of the event; empty when Qt shows it or there is none.
  QString textAt(const QObject* watched, const QHelpEvent& event) const;
  void showText(const QString& text, const QPoint& position, QObject* source);

  CaptionColors colors_;
  bool rounded_ = true;
  const QObject* source_ = nullptr;
};

}  // namespace velun
