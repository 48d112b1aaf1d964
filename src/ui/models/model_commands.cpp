// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/model_commands.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "ui/models/model_texts.h"

#include <algorithm>

namespace velun {

namespace {

using Stage = ModelState::Stage;

QString noticeOf(const Model& model) {
  return L(model.licenceNotice.english, model.licenceNotice.korean);
}

bool agreesToLicence(ModalQuestion& question, const Model& model) {
  if (model.licenceNotice.isEmpty()) return true;
  const Question asked{
      .message = L("The license of “%1” is not clear", "“%1”의 라이선스가 명확하지 않습니다")
                     .arg(model.title),
      .informativeText = noticeOf(model),
      .buttons = {L("Agree and Download", "동의 후 다운로드"), L("Cancel", "취소")}};
  return question.ask(asked) == 0;
}

/// Whether the user accepts the cost of a metered connection.
bool acceptsCost(const ModelServices& services, std::int64_t bytes) {
  if (!services.store.isMetered()) return true;
  const Question asked{.message = L("Download %1 over a metered connection?",
                                    "종량제 연결로 %1을(를) 다운로드할까요?")
                                      .arg(sizeText(bytes)),
                       .informativeText = L("Your provider may charge for it.",
                                            "통신사에서 요금을 청구할 수 있습니다."),
                       .buttons = {L("Download", "다운로드"), L("Cancel", "취소")}};
  return services.question.ask(asked) == 0;
}

}  // namespace

ModelRowAction removeAction(ModelKind kind, bool isUsed) {
  ModelRowAction remove{ModelAction::remove, L("Remove…", "삭제…"), {}};
  if (!isUsed) return remove;
  remove.isEnabled = false;
  remove.toolTip = kind == ModelKind::translation
                       ? L("Translation uses it, until two minutes after the last text",
                           "번역에 사용 중이며, 마지막 번역 2분 뒤에 해제됩니다")
                       : L("Captions use it now", "지금 자막에 사용 중입니다");
  return remove;
}

std::vector<ModelRowAction> storeActions(const ModelStore& store, const Model& model) {
  const ModelState::Stage stage = store.state(model).stage;
  if (stage == Stage::installed) return {removeAction(model.kind, store.isUsed(model))};
  if (stage == Stage::absent && store.installation(model)) {
    return {{ModelAction::update, L("Update", "업데이트"), {}},
            removeAction(model.kind, store.isUsed(model))};
  }
  return downloadActions(stage);
}

std::vector<ModelRowAction> downloadActions(ModelState::Stage stage) {
  const ModelRowAction cancel{ModelAction::cancel, L("Cancel", "취소"), {}};
  switch (stage) {
    case Stage::downloading:
      return {{ModelAction::pause, L("Pause", "일시 정지"), {}}, cancel};
    case Stage::waiting:
    case Stage::verifying:
      return {cancel};
    case Stage::paused:
      return {{ModelAction::resume, L("Resume", "계속"), {}}, cancel};
    case Stage::failed:
      return {{ModelAction::retry, L("Try Again", "다시 시도"), {}}, cancel};
    case Stage::absent:
      return {{ModelAction::install, L("Install", "설치"), {}}};
    case Stage::installed:
      break;
  }
  return {};
}

void showState(ModelRow& row, const ModelState& state) {
  row.notice = state.stage == Stage::failed ? state.failure : QString();
  const double total = static_cast<double>(state.totalBytes);
  const double share = total > 0 ? static_cast<double>(state.doneBytes) / total : 0;
  switch (state.stage) {
    case Stage::waiting:
      row.progress = share;
      row.progressText = L("Waiting…", "대기 중…");
      break;
    case Stage::downloading:
      row.progress = share;
      row.progressText = progressText(state);
      break;
    case Stage::paused:
      row.progress = share;
      row.progressText = L("Paused · ", "일시 정지됨 · ") + progressText(state);
      break;
    case Stage::verifying:
      row.progress = 1;
      row.progressText = L("Checking the files…", "파일을 확인하는 중…");
      break;
    case Stage::absent:
    case Stage::failed:
    case Stage::installed:
      break;
  }
}

bool agreesToLicences(ModalQuestion& question, const std::vector<Model>& models) {
  return std::all_of(models.begin(), models.end(),
                     [&question](const Model& model) { return agreesToLicence(question, model); });
}

void downloadAsked(const ModelServices& services, const std::vector<Model>& models) {
  std::int64_t bytes = 0;
  for (const Model& model : models) bytes += model.downloadBytes();
  if (!acceptsCost(services, bytes)) return;
  for (const Model& model : models) services.store.download(model);
}

void removeAsked(const ModelServices& services, const QString& title,
                 const std::vector<Model>& models, const QString& note) {
  std::int64_t bytes = 0;
  for (const Model& model : models) bytes += services.store.diskBytes(model);
  const QString freed = L("This frees %1 on the disk. It can be installed again later.",
                          "디스크 공간 %1이(가) 확보됩니다. 나중에 다시 설치할 수 있습니다.")
                            .arg(sizeText(bytes));
  const Question asked{.message = L("Remove “%1”?", "“%1”을(를) 삭제할까요?").arg(title),
                       .informativeText = note.isEmpty() ? freed : note + u' ' + freed,
                       .buttons = {L("Remove", "삭제"), L("Cancel", "취소")},
                       .isWarning = true};
  if (services.question.ask(asked) != 0) return;
  try {
    for (const Model& model : models) services.store.remove(model);
  } catch (const std::exception& error) {
    services.question.ask(errorQuestion(descriptionOf(error)));
  }
}

}  // namespace velun
