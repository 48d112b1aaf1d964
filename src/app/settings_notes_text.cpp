// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings_notes_text.h"

#include "captions/update.h"
#include "language/localization.h"
#include "platform/desktop/desktop_platform.h"
#include "platform/models/installed_model.h"
#include "platform/models/model_catalogue.h"
#include "platform/models/model_store.h"
#include "platform/speech/helper/ngram_file.h"
#include "platform/translation/translation_platform.h"
#include "settings/app_settings.h"

#include <algorithm>

namespace velun {

namespace {

constexpr int kMaxShownWords = 20;

QString speechDownloadText(const ModelStore& models, const ModelCatalogue& catalogue) {
  const QStringList busy = models.busy();
  const bool isFetching = std::any_of(busy.begin(), busy.end(), [&catalogue](const QString& id) {
    const Model* model = catalogue.find(id);
    return model && model->kind != ModelKind::translation;
  });
  return isFetching ? L("Downloading speech model…", "음성 모델 다운로드 중…") : QString();
}

QString hidingWhileCasting() {
  return L(
      "This desktop cannot exclude a single window, so the caption window also disappears from "
      "your own screen while the screen is shared or recorded through PipeWire. Screenshots and "
      "programs that record in another way show it.",
      "이 데스크톱은 창 하나만 뺄 수 없으므로, PipeWire로 화면을 공유하거나 녹화하는 동안에는 내 "
      "화면에서도 자막 창이 사라집니다. 스크린샷과 다른 방식으로 녹화하는 프로그램에는 자막 창이 "
      "보입니다.");
}

QString hidingOnX11() {
  return L(
      "Other people may see the caption window: in an X11 session every program can read the "
      "screen. It disappears, also from your own screen, only while the screen is shared through "
      "PipeWire. Close it while you share your screen, or use a Wayland session.",
      "다른 사람에게 자막 창이 보일 수 있습니다. X11 세션에서는 모든 프로그램이 화면을 읽을 수 "
      "있습니다. PipeWire로 화면을 공유할 때만 내 화면과 함께 사라집니다. 화면을 공유하는 동안에는 "
      "자막 창을 닫거나 Wayland 세션을 사용하세요.");
}

}  // namespace

SettingsNotesText::SettingsNotesText(const DesktopPlatform& desktop,
                                     const TranslationPlatform& translation,
                                     const ModelStore& models,
                                     std::shared_ptr<const ModelCatalogue> catalogue,
                                     const AppSettings& settings, QString vocabulary)
    : desktop_(desktop),
      translation_(translation),
      models_(models),
      catalogue_(std::move(catalogue)),
      settings_(settings),
      vocabulary_(std::move(vocabulary)) {
  connect(&settings, &AppSettings::userWordsChanged, this, &SettingsNotesText::findUnknownWords);
  findUnknownWords();
  connect(&desktop, &DesktopPlatform::capabilitiesChanged, this, &SettingsNotes::changed);
  connect(&translation, &TranslationPlatform::activityChanged, this, &SettingsNotes::changed);
  connect(&models, &ModelStore::stateChanged, this, &SettingsNotes::changed);
}

bool SettingsNotesText::hidesFromOthers() const {
  const DesktopCapabilities& can = desktop_.capabilities();
  return can.captureHiding != CaptureHiding::none && !can.readsWithoutCast;
}

QString SettingsNotesText::captureHiding() const {
  const DesktopCapabilities& can = desktop_.capabilities();
  switch (can.captureHiding) {
    case CaptureHiding::compositor:
      return L("This desktop excludes the caption window from screen sharing and recording.",
               "이 데스크톱은 공유·녹화되는 화면에서 자막 창을 제외합니다.");
    case CaptureHiding::whileCasting:
      return can.readsWithoutCast ? hidingOnX11() : hidingWhileCasting();
    case CaptureHiding::none:
      break;
  }
  return L(
      "This desktop offers no way to hide a window from screen sharing and recording. Close the "
      "caption window while you share your screen.",
      "이 데스크톱에서는 화면 공유·녹화에서 창을 숨길 수 없습니다. 화면을 공유하는 동안에는 자막 "
      "창을 닫으세요.");
}

void SettingsNotesText::findUnknownWords() {
  if (settings_.userWords().isEmpty() || vocabulary_.isEmpty()) {
    search_.cancel();
    if (update(unknown_, {})) Q_EMIT changed();
    return;
  }
  search_.start([path = vocabulary_, words = settings_.userWords()](
                    const std::stop_token&) { return unknownUserWords(words, path); },
                [this](const QStringList& unknown) {
                  if (update(unknown_, unknown)) Q_EMIT changed();
                });
}

QString SettingsNotesText::unknownWords() const {
  if (unknown_.isEmpty()) return {};
  QStringList shown = unknown_.mid(0, kMaxShownWords);
  if (shown.size() < unknown_.size()) shown << QStringLiteral("…");
  const QString words = shown.join(QStringLiteral(", "));
  return L(
      QStringLiteral("The built-in recognizer cannot learn new words and does not know: %1")
          .arg(words),
      QStringLiteral("기본 인식기는 새 낱말을 배울 수 없으며 다음 낱말을 모릅니다: %1").arg(words));
}

bool SettingsNotesText::hasSpeakerModel() const {
  return installedModel(*catalogue_, models_, ModelKind::speakers) != nullptr;
}

QString SettingsNotesText::download() const {
  return translation_.activity().value_or(speechDownloadText(models_, *catalogue_));
}

}  // namespace velun
