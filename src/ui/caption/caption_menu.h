// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/caption_colors.h"

#include <QMenu>

namespace velun {

/// A menu in the dark look of the caption panel.
class CaptionMenu final : public QMenu {
  Q_OBJECT

 public:
  /// The room before the texts for nothing, check marks, or check marks and symbols; in points.
  enum class Margin { none = 14, checks = 28, symbols = 46 };

  explicit CaptionMenu(QWidget* parent);

  void setMargin(Margin margin);

  /// Rounded corners need a compositor.
  void setRounded(bool rounded);

  void setColors(const CaptionColors& colors);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void applyStyle();

  CaptionColors colors_;
  bool rounded_ = true;
  Margin margin_ = Margin::checks;
};

}  // namespace velun
