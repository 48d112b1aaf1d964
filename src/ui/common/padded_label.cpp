// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/padded_label.h"

#include <QEvent>

namespace velun {

void PaddedLabel::setPadding(const QMargins& padding) {
  padding_ = padding;
  setContentsMargins(padding);
}

void PaddedLabel::changeEvent(QEvent* event) {
  QLabel::changeEvent(event);
  if (event->type() == QEvent::StyleChange) setContentsMargins(padding_);
}

}  // namespace velun
