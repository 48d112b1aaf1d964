// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/recognizer_provider.h"

#include <algorithm>

namespace velun {

bool RecognizerProvider::isInstalled(const QString& locale) const {
  const std::vector<RecognizerCandidate> all = candidates(locale);
  return std::ranges::any_of(all, &RecognizerCandidate::isInstalled);
}

}  // namespace velun
