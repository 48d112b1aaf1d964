// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/translator_pool.h"

namespace velun {

TranslatorPool::TranslatorPool(std::vector<std::unique_ptr<TranslatorBackend>> backends,
                               Clock& clock)
    : backends_(std::move(backends)), clock_(clock) {}

std::vector<TranslationOffer> TranslatorPool::offers() const {
  std::vector<TranslationOffer> offers;
  for (std::size_t i = 0; i < backends_.size(); ++i) {
    const auto rank = static_cast<int>(i);
    for (const LanguagePair& pair : backends_[i]->installedPairs()) {
      offers.push_back({pair, rank, true});
    }
    for (const LanguagePair& pair : backends_[i]->downloadablePairs()) {
      offers.push_back({pair, rank, false});
    }
  }
  return offers;
}

TranslatorBackend& TranslatorPool::backendOf(const TranslationOffer& offer) const {
  return *backends_[static_cast<std::size_t>(offer.rank)];
}

std::shared_ptr<TextTranslator> TranslatorPool::translator(const TranslationOffer& offer) {
  release_ = clock_.callAfter(kIdleTime, [this] { translators_.clear(); });
  std::shared_ptr<TextTranslator>& translator = translators_[{offer.rank, offer.pair}];
  if (!translator) translator = backendOf(offer).makeTranslator(offer.pair);
  return translator;
}

void TranslatorPool::forget(const TranslationOffer& offer) {
  translators_.erase({offer.rank, offer.pair});
}

}  // namespace velun
