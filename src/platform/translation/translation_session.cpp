// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/translation_session.h"

namespace velun {

TranslationConfiguration::TranslationConfiguration(const QString& source, const QString& target)
    : source_(source), target_(target) {}

void TranslationConfiguration::invalidate() {
  // Counted for the whole run: a third configuration with the same languages must differ from the
  // second one too.
  static std::uint64_t lastVersion = 0;
  version_ = ++lastVersion;
}

}  // namespace velun
