// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/locale_equivalence.h"

#include <array>
#include <unicode/uloc.h>

namespace velun {

namespace {

struct LocaleParts {
  QByteArray canonical;
  QByteArray language;
  /// The script written, when it is not named the one that is usual there; empty when unknown.
  QByteArray script;
};

LocaleParts partsOf(const QString& identifier) {
  const QByteArray raw = identifier.toUtf8();
  std::array<char, ULOC_FULLNAME_CAPACITY> canonical = {};
  std::array<char, ULOC_FULLNAME_CAPACITY> maximal = {};
  std::array<char, ULOC_LANG_CAPACITY> language = {};
  std::array<char, ULOC_SCRIPT_CAPACITY> script = {};
  UErrorCode status = U_ZERO_ERROR;
  uloc_canonicalize(raw.constData(), canonical.data(), canonical.size(), &status);
  uloc_addLikelySubtags(canonical.data(), maximal.data(), maximal.size(), &status);
  uloc_getLanguage(maximal.data(), language.data(), language.size(), &status);
  uloc_getScript(maximal.data(), script.data(), script.size(), &status);
  if (U_FAILURE(status)) return {};
  return {canonical.data(), language.data(), script.data()};
}

}  // namespace

std::optional<QString> equivalentLocale(const QString& identifier, const QStringList& supported) {
  // The library takes an empty identifier for its own idea of a default.
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
