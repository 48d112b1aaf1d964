// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/notice_label.h"

#include "ui/common/accessible_role.h"

namespace velun {

NoticeLabel::NoticeLabel(QWidget* parent) : SelectableLabel(parent) {
  setAccessibleRole(*this, QAccessible::Notification);
  hide();
}

void NoticeLabel::setNotice(const QString& text) {
  if (text == this->text()) return;
  setText(text);
  setAccessibleName(text);
  const bool wasVisible = isVisible();
  setVisible(!text.isEmpty());
  if (wasVisible && isVisible()) announce(*this);
}

}  // namespace velun
