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
  throw Failure(L("No speech model is installed for this language",
                  "이 언어의 음성 모델이 설치되어 있지 않습니다"));
}

}  // namespace velun
