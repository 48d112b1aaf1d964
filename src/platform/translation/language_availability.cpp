// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/language_availability.h"

#include <algorithm>
#include <set>

namespace velun {

LanguageAvailability::LanguageAvailability(std::vector<TranslationOffer> offers)
    : offers_(std::move(offers)) {}

QStringList LanguageAvailability::supportedLanguages(const QStringList& sources) const {
  std::set<QString> languages;
  for (const QString& identifier : sources) languages.insert(translationLanguage(identifier, true));
  std::set<QString> targets;
  for (const TranslationOffer& offer : offers_) targets.insert(offer.pair.target);

  QStringList reachable;
  for (const QString& target : targets) {
    const bool isReachable = std::ranges::any_of(languages, [&](const QString& source) {
      return source != target && !findTranslationRoute(offers_, {source, target}).empty();
    });
    if (isReachable) reachable += target;
  }
  return reachable;
}

}  // namespace velun
