// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/modal_question.h"

#include "language/localization.h"

namespace velun {

Question errorQuestion(const QString& message) {
  Question question;
  question.message = L("Couldn’t Complete the Action", "작업을 완료하지 못했습니다");
  question.informativeText = message;
  question.buttons = {L("OK", "확인")};
  question.isWarning = true;
  return question;
}

}  // namespace velun
