// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings_notes_text.h"

#include "language/localization.h"
#include "platform/desktop/desktop_platform.h"
#include "platform/models/model_catalogue.h"
#include "platform/models/model_store.h"
#include "platform/translation/translation_platform.h"

#include <algorithm>

namespace velun {

namespace {

QString speechDownloadText(const ModelStore& models) {
  static const ModelCatalogue catalogue = ModelCatalogue::builtIn();
  const QStringList busy = models.busy();
  const bool isFetching = std::any_of(busy.begin(), busy.end(), [](const QString& id) {
    const Model* model = catalogue.find(id);
    return model && model->kind != ModelKind::translation;
  });
  return isFetching ? L("Downloading speech model…", "음성 모델 다운로드 중…") : QString();
}

}  // namespace

SettingsNotesText::SettingsNotesText(const DesktopPlatform& desktop,
                                     const TranslationPlatform& translation,
                                     const ModelStore& models)
    : desktop_(desktop), translation_(translation), models_(models) {
  connect(&desktop, &DesktopPlatform::capabilitiesChanged, this, &SettingsNotes::changed);
  connect(&translation, &TranslationPlatform::activityChanged, this, &SettingsNotes::changed);
  connect(&models, &ModelStore::busyChanged, this, &SettingsNotes::changed);
}

QString SettingsNotesText::captureHiding() const {
  switch (desktop_.capabilities().captureHiding) {
    case CaptureHiding::compositor:
      return L("This desktop excludes the caption window from screen sharing and recording.",
               "이 데스크톱은 공유·녹화되는 화면에서 자막 창을 제외합니다.");
    case CaptureHiding::whileCasting:
      return L(
          "This desktop cannot exclude a single window, so the caption window also disappears from "
          "your own screen while the screen is shared or recorded.",
          "이 데스크톱은 창 하나만 뺄 수 없으므로, 화면을 공유하거나 녹화하는 동안에는 내 "
          "화면에서도 자막 창이 사라집니다.");
    case CaptureHiding::none:
      break;
  }
  return L("This desktop offers no way to hide a window from screen sharing and recording.",
           "이 데스크톱에서는 화면 공유·녹화에서 창을 숨길 수 없습니다.");
}

QString SettingsNotesText::download() const {
  return translation_.activity().value_or(speechDownloadText(models_));
}

}  // namespace velun
