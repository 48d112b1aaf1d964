// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/title_question.h"

#include "language/localization.h"

#include <QInputDialog>

namespace velun {

std::optional<QString> askTitle(const QString& title) {
  QInputDialog dialog;
  dialog.setWindowTitle(L("Rename Session", "세션 이름 변경"));
  dialog.setLabelText(L("Title", "제목"));
  dialog.setTextValue(title);
  // Otherwise the caption panel, which is above ordinary windows, would cover it.
  dialog.setWindowFlag(Qt::WindowStaysOnTopHint);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  return dialog.textValue();
}

}  // namespace velun
