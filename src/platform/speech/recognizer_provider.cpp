// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/recognizer_provider.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"

namespace velun {

std::optional<RecognizerCandidate> RecognizerProvider::installed(const QString& locale) const {
  for (const RecognizerCandidate& candidate : candidates(locale)) {
    if (candidate.isInstalled) return candidate;
  }
  return std::nullopt;
}

RecognizerProvider::Factory RecognizerProvider::factory(const QString& locale) const {
  const std::optional<RecognizerCandidate> best = installed(locale);
  if (best) return makeFactory(locale, best->id);
  throw Failure(
      L("There is no recognizer for this language on this computer. Choose another language, or "
        "download a speech model in Settings.",
        "이 컴퓨터에는 이 언어의 인식기가 없습니다. 다른 언어를 선택하거나 설정에서 음성 모델을 "
        "다운로드하세요."));
}

}  // namespace velun
