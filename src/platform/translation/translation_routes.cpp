// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/translation_routes.h"

#include <algorithm>
#include <optional>
#include <set>

namespace velun {

namespace {

const QString kPivot = QStringLiteral("en");

std::optional<TranslationOffer> findStep(const std::vector<TranslationOffer>& offers,
                                         const LanguagePair& pair) {
  std::optional<TranslationOffer> installed;
  std::optional<TranslationOffer> downloadable;
  for (const TranslationOffer& offer : offers) {
    if (offer.pair != pair) continue;
    auto& best = offer.isInstalled ? installed : downloadable;
    if (!best || offer.rank < best->rank) best = offer;
  }
  return installed ? installed : downloadable;
}

std::ptrdiff_t downloads(const std::vector<TranslationOffer>& steps) {
  return std::ranges::count(steps, false, &TranslationOffer::isInstalled);
}

}  // namespace

std::vector<TranslationOffer> findTranslationRoute(const std::vector<TranslationOffer>& offers,
                                                   const LanguagePair& wanted) {
  std::vector<TranslationOffer> direct;
  if (const auto step = findStep(offers, wanted)) direct.push_back(*step);
  if (wanted.source == kPivot || wanted.target == kPivot) return direct;

  const auto toPivot = findStep(offers, {wanted.source, kPivot});
  const auto fromPivot = findStep(offers, {kPivot, wanted.target});
  if (!toPivot || !fromPivot) return direct;
  std::vector<TranslationOffer> pivoted{*toPivot, *fromPivot};
  if (direct.empty() || downloads(pivoted) < downloads(direct)) return pivoted;
  return direct;
}

QStringList reachableLanguages(const std::vector<TranslationOffer>& offers,
                               const QStringList& sources) {
  std::set<QString> languages;
  for (const QString& identifier : sources) languages.insert(translationLanguage(identifier, true));
  std::set<QString> targets;
  for (const TranslationOffer& offer : offers) targets.insert(offer.pair.target);

  QStringList reachable;
  for (const QString& target : targets) {
    const bool isReachable = std::ranges::any_of(languages, [&](const QString& source) {
      return source != target && !findTranslationRoute(offers, {source, target}).empty();
    });
    if (isReachable) reachable += target;
  }
  return reachable;
}

}  // namespace velun
