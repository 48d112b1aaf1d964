// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/discard_confirmation.h"

#include "captions/caption_view_model.h"
#include "captions/modal_question.h"
#include "language/localization.h"

namespace velun {

namespace {

enum Button { save, discard };

Question discardQuestion(const QString& title, std::size_t lineCount) {
  const QString count = QString::number(lineCount);
  Question question;
  question.message = title;
  question.informativeText =
      lineCount == 1
          ? L("The 1 sentence in this session hasn’t been saved. If you don’t save, it’ll be lost.",
              "현재 세션의 1문장은 아직 저장되지 않았습니다. 저장하지 않으면 이 기록은 사라집니다.")
          : L("The " + count +
                  " sentences in this session haven’t been saved. If you don’t save, they’ll be "
                  "lost.",
              "현재 세션의 " + count +
                  "문장은 아직 저장되지 않았습니다. 저장하지 않으면 이 기록은 사라집니다.");
  question.buttons = {L("Save Session", "세션 저장"), L("Don’t Save", "저장하지 않음"),
                      L("Cancel", "취소")};
  question.isWarning = true;
  return question;
}

}  // namespace

bool confirmDiscarding(CaptionViewModel& model, const QString& title, ModalQuestion& question) {
  if (!model.hasUnsavedSession()) return true;
  if (!model.settings().askBeforeDiscarding() && !model.saveError()) return true;

  const std::optional<int> answer = question.ask(discardQuestion(title, model.lines().size()));
  if (answer == Button::discard) return true;
  if (answer != Button::save) return false;
  if (model.saveCurrentSession()) return true;
  question.ask(errorQuestion(
      model.saveError().value_or(L("Couldn’t save the session.", "세션을 저장하지 못했습니다."))));
  return false;
}

}  // namespace velun
