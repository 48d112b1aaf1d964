// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/caption_colors.h"

#include <QAbstractButton>
#include <QVariantAnimation>

namespace velun {

/// The round button over the transcript that scrolls to the latest caption. Fades in and out.
class JumpButton final : public QAbstractButton {
  Q_OBJECT

 public:
  static constexpr int side = 32;

  explicit JumpButton(QWidget* parent);

  /// Whether the button is shown, or is fading in.
  void setWanted(bool wanted);
  bool isWanted() const { return wanted_; }

  void setColors(const CaptionColors& colors);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void present();

  CaptionColors colors_;
  bool wanted_ = false;
  QVariantAnimation opacity_{this};
};

}  // namespace velun
