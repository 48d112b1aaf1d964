// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/recording_confirmation.h"

#include "captions/modal_question.h"
#include "language/localization.h"

#include <QFileInfo>

namespace velun {

namespace {

enum Button { keep, end };

QString unfinishedText(std::size_t count) {
  if (count == 1) {
    return L(
        "1 recording isn’t finished. If you quit, the part that is captioned so far is saved "
        "as a session.",
        "녹음 파일 1개의 자막을 아직 다 만들지 못했습니다. 종료하면 지금까지 만든 자막만 "
        "기록으로 저장됩니다.");
  }
  return L("%1 recordings aren’t finished. If you quit, the part that is captioned so far is saved "
           "as a session; recordings that wait get no captions.",
           "녹음 파일 %1개의 자막을 아직 다 만들지 못했습니다. 종료하면 지금까지 만든 자막만 "
           "기록으로 저장되고, 대기 중인 파일의 자막은 만들지 않습니다.")
      .arg(count);
}

QString unsavedText(std::size_t count) {
  if (count == 1) {
    return L("The captions of 1 recording couldn’t be saved. If you quit, they’ll be lost.",
             "녹음 파일 1개의 자막을 저장하지 못했습니다. 종료하면 이 자막은 사라집니다.");
  }
  return L("The captions of %1 recordings couldn’t be saved. If you quit, they’ll be lost.",
           "녹음 파일 %1개의 자막을 저장하지 못했습니다. 종료하면 이 자막은 사라집니다.")
      .arg(count);
}

}  // namespace

bool confirmEndingRecordings(const RecordingQueue& recordings, ModalQuestion& question) {
  QStringList reasons;
  if (const auto count = recordings.unfinishedCount(); count > 0) reasons += unfinishedText(count);
  if (const auto count = recordings.unsavedCount(); count > 0) reasons += unsavedText(count);
  if (reasons.isEmpty()) return true;
  const Question asked{.message = L("Quit before the recordings are finished?",
                                    "녹음 파일의 자막이 완성되기 전에 종료할까요?"),
                       .informativeText = reasons.join(QLatin1Char('\n')),
                       .buttons = {L("Don’t Quit", "종료하지 않음"), L("Quit", "종료")},
                       .isWarning = true};
  return question.ask(asked) == Button::end;
}

bool confirmRemoving(const RecordingQueue& recordings, const RecordingQueue::Item& item,
                     ModalQuestion& question) {
  if (!recordings.hasUnsavedCaptions(item.id)) return true;
  const Question asked{.message = L("Discard the captions of “%1”?", "“%1” 파일의 자막을 버릴까요?")
                                      .arg(QFileInfo(item.path).fileName()),
                       .informativeText = L("They aren’t saved yet and will be lost.",
                                            "아직 저장되지 않은 자막이므로 사라집니다."),
                       .buttons = {L("Keep", "유지"), L("Discard", "버리기")},
                       .isWarning = true};
  return question.ask(asked) == Button::end;
}

}  // namespace velun
