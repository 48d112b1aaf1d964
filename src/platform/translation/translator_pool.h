// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "platform/translation/translation_routes.h"
#include "platform/translation/translator_backend.h"

#include <map>
#include <memory>
#include <vector>

namespace velun {

/// The translators in use, loaded once for all sessions and let go when nothing was translated for
/// a while, because a loaded model or the programs of a pair take tens of megabytes. Main thread.
class TranslatorPool {
 public:
  /// How long translators stay loaded without work.
  static constexpr std::chrono::minutes kIdleTime{2};

  /// `backends` are in order of preference. `clock` must outlive the pool.
  TranslatorPool(std::vector<std::unique_ptr<TranslatorBackend>> backends, Clock& clock);

  /// Everything that the back ends offer now.
  std::vector<TranslationOffer> offers() const;

  TranslatorBackend& backendOf(const TranslationOffer& offer) const;

  /// The translator of an installed offer.
  std::shared_ptr<TextTranslator> translator(const TranslationOffer& offer);

  /// Lets a translator go: the next one is made anew, from a better model if there is one now.
  void forget(const TranslationOffer& offer);

 private:
  std::vector<std::unique_ptr<TranslatorBackend>> backends_;
  Clock& clock_;
  std::map<std::pair<int, LanguagePair>, std::shared_ptr<TextTranslator>> translators_;
  std::unique_ptr<ScheduledCall> release_;
};

}  // namespace velun
