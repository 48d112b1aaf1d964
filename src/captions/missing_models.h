// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>

namespace velun {

class TranslationPlatform;

/// Says that no recognizer for the language is installed, and what to do, localized.
QString missingRecognizerText();

/// Why captions in the locale `localeID` cannot be translated into the language `target` at the
/// moment, and what to do, localized; nullopt if they can be. Asks no network.
std::optional<QString> missingTranslation(const TranslationPlatform& translation,
                                          const QString& localeID, const QString& target);

}  // namespace velun
