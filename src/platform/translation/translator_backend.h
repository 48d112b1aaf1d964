// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/pair_models.h"
#include "platform/translation/text_translator.h"

#include <memory>
#include <QCoroTask>
#include <stop_token>
#include <vector>

namespace velun {

/// One kind of translator and its directions. Main thread.
class TranslatorBackend {
 public:
  virtual ~TranslatorBackend() = default;

  /// The pairs that can be translated now.
  virtual std::vector<LanguagePair> installedPairs() const = 0;

  /// The pairs that can be translated, or translated better than now, after a download.
  virtual std::vector<LanguagePair> downloadablePairs() const = 0;

  /// What has to be downloaded for one of `downloadablePairs`, in bytes.
  virtual qint64 downloadBytes(const LanguagePair& /*pair*/) const { return 0; }

  /// The pairs that it has models for, and their models.
  virtual std::vector<PairModels> models() const { return {}; }

  /// The id of the model that `makeTranslator` would use now; empty without models.
  virtual QString usedModel(const LanguagePair& /*pair*/) const { return {}; }

  /// Completes when `pair` can be translated. Throws `Failure` with a text that tells the user what
  /// to do or, soon after a stop request, `Cancelled`.
  virtual QCoro::Task<> install(LanguagePair pair, std::stop_token stop) = 0;

  /// A translator of an installed pair, not loaded yet.
  virtual std::shared_ptr<TextTranslator> makeTranslator(const LanguagePair& pair) = 0;
};

}  // namespace velun
