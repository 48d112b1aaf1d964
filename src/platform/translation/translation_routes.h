// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/language_pair.h"

#include <QStringList>
#include <vector>

namespace velun {

/// One direction that a back end offers.
struct TranslationOffer {
  LanguagePair pair;
  int rank = 0;  ///< The back end's place in the order of preference; 0 is the best.
  bool isInstalled = false;
};

/// The steps from one language to another: one, or two through English; empty when there is no
/// route. Prefers the route with fewer downloads, then the shorter one.
std::vector<TranslationOffer> findTranslationRoute(const std::vector<TranslationOffer>& offers,
                                                   const LanguagePair& wanted);

/// Every language that has a route from one of `sources` other than itself, in alphabetical order.
/// Downloads count. `sources` are identifiers of any form.
QStringList reachableLanguages(const std::vector<TranslationOffer>& offers,
                               const QStringList& sources);

}  // namespace velun
