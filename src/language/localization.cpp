// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"

#include "platform/foundation/preference_store.h"

#include <algorithm>
#include <QByteArray>
#include <unicode/locid.h>
#include <unicode/unistr.h>

namespace velun {

Localization& Localization::shared() {
  static Localization instance;
  return instance;
}

void Localization::load(const PreferenceStore& preferences) {
  const QString stored = preferences.get<QString>(QStringLiteral("language")).value_or(QString());
  setLanguage(appLanguageFromRawValue(stored).value_or(AppLanguage::english));
}

void Localization::setLanguage(AppLanguage language) {
  if (language_.exchange(language) != language) Q_EMIT languageChanged();
}

QString Localization::locale() const {
  return rawValue(language());
}

QString L(const char* english, const char* korean) {
  const bool isKorean = Localization::shared().language() == AppLanguage::korean;
  return QString::fromUtf8(isKorean ? korean : english);
}

QString L(const QString& english, const QString& korean) {
  return Localization::shared().language() == AppLanguage::korean ? korean : english;
}

namespace {

/// ICU makes up names such as "zz (QQ)" for unknown codes. The language alone, without script and
/// region, tells: ICU names an unknown one by its code.
bool hasName(const icu::Locale& locale, const icu::Locale& display) {
  const QString code = QString::fromLatin1(locale.getLanguage());
  icu::UnicodeString name;
  icu::Locale(locale.getLanguage()).getDisplayLanguage(display, name);
  const QString text = QString::fromUtf16(name.getBuffer(), name.length());
  return !code.isEmpty() && text != code;
}

/// ICU gives very long identifiers an empty name and shows the bytes of other letters one by one.
bool canBeIdentifier(const QString& text) {
  return text.size() < ULOC_FULLNAME_CAPACITY &&
         std::all_of(text.begin(), text.end(), [](QChar c) { return c >= u' ' && c <= u'~'; });
}

}  // namespace

QString languageName(const QString& identifier) {
  if (!canBeIdentifier(identifier)) return identifier;
  const icu::Locale locale = icu::Locale::createCanonical(identifier.toUtf8().constData());
  const icu::Locale display(Localization::shared().locale().toUtf8().constData());
  if (locale.isBogus() || !hasName(locale, display)) return identifier;
  icu::UnicodeString name;
  locale.getDisplayName(display, name);
  if (name.isEmpty()) return identifier;
  return QString::fromUtf16(name.getBuffer(), name.length());
}

}  // namespace velun
