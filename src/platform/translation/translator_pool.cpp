// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/translator_pool.h"

#include <algorithm>
#include <exception>
#include <iterator>

namespace velun {

TranslatorPool::TranslatorPool(std::vector<std::unique_ptr<TranslatorBackend>> backends,
                               Clock& clock)
    : backends_(std::move(backends)), clock_(clock) {
  // A translator must not run on two threads at once. A text that was cancelled may still be
  // running when the next one starts.
  thread_.setMaxThreadCount(1);
}

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

std::vector<PairModels> TranslatorPool::models() const {
  std::vector<PairModels> all;
  for (const auto& backend : backends_) {
    std::vector<PairModels> own = backend->models();
    std::ranges::move(own, std::back_inserter(all));
  }
  return all;
}

TranslatorBackend& TranslatorPool::backendOf(const TranslationOffer& offer) const {
  return *backends_[static_cast<std::size_t>(offer.rank)];
}

QCoro::Task<> TranslatorPool::install(std::shared_ptr<TranslatorPool> pool, TranslationOffer offer,
                                      std::stop_token stop) {
  pool->countInstalls(+1);
  std::exception_ptr error;
  try {
    QCoro::Task<> task = pool->backendOf(offer).install(offer.pair, stop);
    co_await task;
  } catch (...) {
    error = std::current_exception();
  }
  pool->countInstalls(-1);
  if (error) std::rethrow_exception(error);
}

void TranslatorPool::countInstalls(int change) {
  const bool wasInstalling = isInstalling();
  installing_ += change;
  if (isInstalling() != wasInstalling) Q_EMIT installingChanged();
}

std::shared_ptr<TextTranslator> TranslatorPool::translator(const TranslationOffer& offer) {
  release_ = clock_.callAfter(kIdleTimeout, [this] { translators_.clear(); });
  Loaded& loaded = translators_[{offer.rank, offer.pair}];
  const QString model = backendOf(offer).usedModel(offer.pair);
  if (!loaded.translator || loaded.model != model) {
    loaded = {model, backendOf(offer).makeTranslator(offer.pair)};
  }
  return loaded.translator;
}

void TranslatorPool::forget(const TranslationOffer& offer) {
  translators_.erase({offer.rank, offer.pair});
}

}  // namespace velun
