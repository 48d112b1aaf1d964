// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <tuple>

namespace velun {

/// One direction of translation, in language identifiers as `translationLanguage` makes them.
struct LanguagePair {
  QString source;
  QString target;

  bool operator==(const LanguagePair&) const = default;

  /// An order for use as a key.
  bool operator<(const LanguagePair& other) const {
    return std::tie(source, target) < std::tie(other.source, other.target);
  }
};

/// What translators call the language of an identifier, its region left out: "en_US" and "eng"
/// are "en". Traditional Chinese, which no translator writes, stays "zh-Hant" unless
/// `anyScript`: whoever reads Chinese reads both.
QString translationLanguage(const QString& identifier, bool anyScript);

}  // namespace velun
