// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/caption_colors.h"

#include <QMenu>

namespace velun {

/// A menu of the caption panel, dark like it.
class CaptionMenu final : public QMenu {
  Q_OBJECT

 public:
  /// What stands before the texts: nothing, check marks, or check marks and symbols. In points.
  enum class Margin { none = 14, checks = 28, symbols = 46 };

  explicit CaptionMenu(QWidget* parent);

  void setMargin(Margin margin);

  /// Rounded corners need a compositor.
  void setRounded(bool rounded);

  void setColors(const CaptionColors& colors);

  /// A submenu in the same look.
  CaptionMenu* addCaptionMenu(const QString& menuTitle);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void applyStyle();

  CaptionColors colors_;
  bool rounded_ = true;
  Margin margin_ = Margin::checks;
};

}  // namespace velun
