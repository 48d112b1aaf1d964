// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/translation_platform.h"
#include "platform/translation/translator_pool.h"

#include <functional>
#include <memory>
#include <vector>

namespace velun {

/// Translation on this computer with the given back ends.
class LocalTranslationPlatform final : public TranslationPlatform {
  Q_OBJECT

 public:
  /// The languages that can be recognized, as identifiers of any form.
  using SpokenLanguages = std::function<QCoro::Task<QStringList>()>;

  /// `backends` are in order of preference. `clock` must outlive the platform and its translators.
  LocalTranslationPlatform(std::vector<std::unique_ptr<TranslatorBackend>> backends,
                           SpokenLanguages spokenLanguages, Clock& clock);

  std::unique_ptr<Translator> makeTranslator(const QString& source, const QString& target) override;
  QCoro::Task<QStringList> supportedLanguages() override;
  std::vector<std::optional<qint64>> downloadBytes(const QString& source,
                                                   const QStringList& targets) const override;
  std::vector<PairModels> models() const override;
  std::optional<QString> activity() const override;

 private:
  std::shared_ptr<TranslatorPool> pool_;
  SpokenLanguages spokenLanguages_;
};

}  // namespace velun
