// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/language_pair.h"
#include "platform/translation/text_translator.h"

#include <memory>
#include <QCoroTask>
#include <stop_token>
#include <vector>

namespace velun {

/// One kind of translator with the directions that it has. Main thread.
class TranslatorBackend {
 public:
  virtual ~TranslatorBackend() = default;

  /// What can be translated now.
  virtual std::vector<LanguagePair> installedPairs() const = 0;

  /// What can be translated, or be translated better than now, after a download.
  virtual std::vector<LanguagePair> downloadablePairs() const = 0;

  /// Returns when `pair` can be translated; at once when it can be already. Throws `Failure` with
  /// a text that says what to do, or `Cancelled` soon after a stop was requested.
  virtual QCoro::Task<> install(LanguagePair pair, std::stop_token stop) = 0;

  /// Downloads in the background, some time, without reporting a failure.
  virtual void installQuietly(const LanguagePair& pair) = 0;

  /// A translator of an installed pair, not loaded yet.
  virtual std::shared_ptr<TextTranslator> makeTranslator(const LanguagePair& pair) = 0;
};

}  // namespace velun
