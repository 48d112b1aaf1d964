// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/app_language.h"

#include "language/raw_value.h"
namespace velun {

QString rawValue(AppLanguage language) {
  return language == AppLanguage::korean ? QStringLiteral("ko") : QStringLiteral("en");
}

std::optional<AppLanguage> appLanguageFromRawValue(const QString& raw) {
  return valueFromRaw(allAppLanguages, raw);
}

QString title(AppLanguage language) {
  return language == AppLanguage::korean ? QStringLiteral("한국어") : QStringLiteral("English");
}

}  // namespace velun
