// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/caption_colors.h"

#include <QAbstractButton>

namespace velun {

/// A button with a text over the dark panel, as wide as its text.
class CaptionButton final : public QAbstractButton {
  Q_OBJECT

 public:
  explicit CaptionButton(QWidget* parent);

  void setColors(const CaptionColors& colors);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  /// A button keeps the keyboard focus while it is disabled for a moment.
  bool focusNextPrevChild(bool next) override;

 private:
  CaptionColors colors_;
};

}  // namespace velun
