// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/modal_question.h"

#include <QDialog>

namespace velun {

/// An alert: a message in bold, an explanation under it, and buttons in a fixed order, beside a
/// warning sign or the program's icon. Modal by default.
class AlertDialog final : public QDialog {
  Q_OBJECT

 public:
  explicit AlertDialog(const Question& question);

  /// The index of the pressed button; nullopt when the alert was closed in another way.
  std::optional<int> answer() const { return answer_; }

 private:
  QLayout* makeButtons(const QStringList& texts);

  std::optional<int> answer_;
};

}  // namespace velun
