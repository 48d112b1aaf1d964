// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/local_translation_platform.h"

#include "language/localization.h"
#include "platform/translation/local_translator.h"

namespace velun {

LocalTranslationPlatform::LocalTranslationPlatform(
    std::vector<std::unique_ptr<TranslatorBackend>> backends, SpokenLanguages spokenLanguages,
    Clock& clock)
    : pool_(std::make_shared<TranslatorPool>(std::move(backends), clock)),
      spokenLanguages_(std::move(spokenLanguages)) {
  connect(pool_.get(), &TranslatorPool::installingChanged, this,
          &TranslationPlatform::activityChanged);
}

std::unique_ptr<Translator> LocalTranslationPlatform::makeTranslator(const QString& source,
                                                                     const QString& target) {
  return std::make_unique<LocalTranslator>(pool_, source, target);
}

QCoro::Task<QStringList> LocalTranslationPlatform::supportedLanguages() {
  const std::shared_ptr<TranslatorPool> pool = pool_;
  QCoro::Task<QStringList> task = spokenLanguages_();
  const QStringList spoken = co_await task;
  co_return reachableLanguages(pool->offers(), spoken);
}

std::vector<std::optional<qint64>> LocalTranslationPlatform::downloadBytes(
    const QString& source, const QStringList& targets) const {
  const std::vector<TranslationOffer> offers = pool_->offers();
  std::vector<std::optional<qint64>> bytes;
  for (const QString& target : targets) {
    const std::vector<TranslationOffer> route = findTranslationRoute(
        offers, {translationLanguage(source, true), translationLanguage(target, false)});
    std::optional<qint64> sum;
    for (const TranslationOffer& step : route) {
      sum = sum.value_or(0) +
            (step.isInstalled ? 0 : pool_->backendOf(step).downloadBytes(step.pair));
    }
    bytes.push_back(sum);
  }
  return bytes;
}

std::vector<PairModels> LocalTranslationPlatform::models() const {
  return pool_->models();
}

std::optional<QString> LocalTranslationPlatform::activity() const {
  if (!pool_->isInstalling()) return std::nullopt;
  return L("Downloading translation model…", "번역 모델 다운로드 중…");
}

}  // namespace velun
