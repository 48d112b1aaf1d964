// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <tuple>

namespace velun {

/// One direction of translation. The identifiers are those of `translationLanguage`.
struct LanguagePair {
  QString source;
  QString target;

  bool operator==(const LanguagePair&) const = default;

  bool operator<(const LanguagePair& other) const {
    return std::tie(source, target) < std::tie(other.source, other.target);
  }
};

/// The language of an identifier as translators name it, without its region: "en_US" and "eng"
/// become "en". Traditional Chinese stays "zh-Hant" because no translator writes it; with
/// `anyScript`, for source languages, it becomes "zh".
QString translationLanguage(const QString& identifier, bool anyScript);

}  // namespace velun
