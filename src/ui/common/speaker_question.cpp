// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/speaker_question.h"

#include "language/localization.h"
#include "model/speaker.h"

#include <QInputDialog>

namespace velun {

std::optional<QString> askSpeaker(const QString& speaker, const QStringList& speakers) {
  QInputDialog dialog;
  dialog.setWindowTitle(L("Name Speaker", "화자 이름 지정"));
  dialog.setLabelText(
      L("Name for every line of this speaker.\nThe name of another speaker makes the two one.",
        "이 화자의 모든 문장에 쓸 이름입니다.\n다른 화자의 이름을 쓰면 두 화자가 합쳐집니다."));
  QStringList names;
  for (const QString& each : speakers) names += speakerName(each);
  dialog.setComboBoxItems(names);
  dialog.setComboBoxEditable(true);
  dialog.setTextValue(speakerName(speaker));
  // Otherwise the caption panel, which is above ordinary windows, would cover it.
  dialog.setWindowFlag(Qt::WindowStaysOnTopHint);
  if (dialog.exec() != QDialog::Accepted) return std::nullopt;
  const QString name = speakerNamed(dialog.textValue());
  if (name.isEmpty() || name == speaker) return std::nullopt;
  return name;
}

}  // namespace velun
