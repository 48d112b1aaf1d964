// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/language_pair.h"

#include <unicode/locid.h>

namespace velun {

QString translationLanguage(const QString& identifier, bool anyScript) {
  icu::Locale locale = icu::Locale::createCanonical(identifier.toUtf8().constData());
  QString language = QString::fromLatin1(locale.getLanguage());
  if (language == QStringLiteral("no")) return QStringLiteral("nb");
  if (language != QStringLiteral("zh") || anyScript) return language;
  UErrorCode error = U_ZERO_ERROR;
  locale.addLikelySubtags(error);
  const bool isTraditional = QLatin1String(locale.getScript()) == QLatin1String("Hant");
  return isTraditional ? QStringLiteral("zh-Hant") : language;
}

}  // namespace velun
