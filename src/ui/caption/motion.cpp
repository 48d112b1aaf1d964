// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/motion.h"

#include <QStyle>
#include <QWidget>

namespace velun {

int motionTime(const QWidget& widget, std::chrono::milliseconds usual) {
  const int styles =
      widget.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &widget);
  return styles > 0 ? static_cast<int>(usual.count()) : 0;
}

}  // namespace velun
