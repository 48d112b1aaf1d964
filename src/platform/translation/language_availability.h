// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/translation_routes.h"

#include <QStringList>
#include <vector>

namespace velun {

/// Which languages can be translated into, directly or through English.
class LanguageAvailability {
 public:
  explicit LanguageAvailability(std::vector<TranslationOffer> offers);

  /// Every language that can be reached from one of `sources` other than itself, in alphabetical
  /// order of the identifiers. Downloads count as reachable.
  QStringList supportedLanguages(const QStringList& sources) const;

 private:
  std::vector<TranslationOffer> offers_;
};

}  // namespace velun
