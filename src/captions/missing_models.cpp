// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/missing_models.h"

#include "language/localization.h"
#include "platform/translation/translation_platform.h"

namespace velun {

QString missingRecognizerText() {
  return L(
      "The recognizer isn’t installed. Download it in Velun’s settings, under Languages & Models.",
      "인식기가 설치되어 있지 않습니다. Velun 설정의 언어 및 모델에서 다운로드하세요.");
}

std::optional<QString> missingTranslation(const TranslationPlatform& translation,
                                          const QString& localeID, const QString& target) {
  const std::optional<qint64> bytes = translation.downloadBytes(localeID, {target}).at(0);
  if (bytes == 0) return std::nullopt;
  if (bytes) {
    return L(
        "The translation model isn’t installed. Download it in Velun’s settings, under "
        "Languages & Models.",
        "번역 모델이 설치되어 있지 않습니다. Velun 설정의 언어 및 모델에서 "
        "다운로드하세요.");
  }
  return L("There is no translation from %1 to %2.", "%1에서 %2(으)로 번역할 수 없습니다.")
      .arg(languageName(localeID), languageName(target));
}

}  // namespace velun
