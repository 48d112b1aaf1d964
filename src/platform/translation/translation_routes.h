// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/language_pair.h"

#include <optional>
#include <vector>

namespace velun {

/// One direction that a back end offers. `rank` is the back end's place in the order of
/// preference, the best being 0.
struct TranslationOffer {
  LanguagePair pair;
  int rank = 0;
  bool isInstalled = false;
};

/// One step of a translation: who does it, and who would do it better after a download.
struct TranslationStep {
  TranslationOffer offer;
  std::optional<TranslationOffer> better;
};

/// The steps from one language to another: one, or two through English; none when there is no
/// way. A way that needs no download comes first, then the shorter one.
std::vector<TranslationStep> findTranslationRoute(const std::vector<TranslationOffer>& offers,
                                                  const LanguagePair& wanted);

}  // namespace velun
