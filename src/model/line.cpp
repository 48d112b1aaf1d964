// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/line.h"

#include "language/localization.h"
#include "platform/foundation/date_formats.h"

#include <algorithm>

namespace velun {

bool CodePointOrder::operator()(const QString& left, const QString& right) const {
  // Surrogates (D800…DFFF) are less than the units E000…FFFF, although the code points that they
  // encode are greater.
  const auto rank = [](QChar c) {
    const char16_t unit = c.unicode();
    return unit >= 0xD800 ? (unit >= 0xE000 ? unit - 0x800 : unit + 0x2000) : int{unit};
  };
  return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                      [&rank](QChar a, QChar b) { return rank(a) < rank(b); });
}

void Line::correct(const QString& corrected) {
  if (!original) original = text;
  text = corrected;
  if (text == *original) original.reset();
}

QString Line::timestamp() const {
  if (legacyTimestamp) return *legacyTimestamp;
  if (!time) return {};
  return timeOfDay(*time, Localization::shared().locale());
}

std::vector<std::pair<QString, QString>> Line::translatedTexts(
    const std::optional<QString>& language) const {
  std::vector<std::pair<QString, QString>> texts;
  if (language) {
    if (const auto found = translations.find(*language); found != translations.end()) {
      texts.emplace_back(found->first, found->second);
    }
  } else {
    texts.assign(translations.begin(), translations.end());
  }
  if (legacyTranslation) texts.emplace_back(QString(), *legacyTranslation);
  return texts;
}

}  // namespace velun
