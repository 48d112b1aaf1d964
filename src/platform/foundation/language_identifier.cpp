// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/language_identifier.h"

#include <unicode/locid.h>

namespace velun {

namespace {

QString languageCodeOf(const icu::Locale& locale) {
  const QString code = QString::fromLatin1(locale.getLanguage());
  // "und" is the code for "not determined".
  return code == QLatin1String("und") ? QString() : code;
}

}  // namespace

QString languageCode(const QString& identifier) {
  return languageCodeOf(icu::Locale(identifier.toUtf8().constData()));
}

QString languageOfLocale(const QString& localeID) {
  const icu::Locale locale(localeID.toUtf8().constData());
  const QString script = QString::fromLatin1(locale.getScript());
  const QString code = languageCodeOf(locale);
  return script.isEmpty() ? code : code + QLatin1Char('-') + script;
}

}  // namespace velun
