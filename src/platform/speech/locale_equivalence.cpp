// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/locale_equivalence.h"

#include <unicode/locid.h>

namespace velun {

namespace {

struct LocaleParts {
  QByteArray canonical;
  QByteArray language;
  /// The script, by default the usual one of the locale; empty when unknown.
  QByteArray script;
};

LocaleParts partsOf(const QString& identifier) {
  icu::Locale locale = icu::Locale::createCanonical(identifier.toUtf8().constData());
  const QByteArray canonical = locale.getName();
  UErrorCode status = U_ZERO_ERROR;
  locale.addLikelySubtags(status);
  if (locale.isBogus() || U_FAILURE(status)) return {};
  return {canonical, locale.getLanguage(), locale.getScript()};
}

}  // namespace

std::optional<QString> equivalentLocale(const QString& identifier, const QStringList& supported) {
  // ICU would use its default locale.
  if (identifier.isEmpty()) return std::nullopt;
  const LocaleParts wanted = partsOf(identifier);
  if (wanted.language.isEmpty()) return std::nullopt;
  std::optional<QString> sameLanguage;
  for (const QString& candidate : supported) {
    const LocaleParts offered = partsOf(candidate);
    if (offered.canonical == wanted.canonical) return candidate;
    if (!sameLanguage && offered.language == wanted.language && offered.script == wanted.script) {
      sameLanguage = candidate;
    }
  }
  return sameLanguage;
}

}  // namespace velun
