// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <QString>

namespace velun {

/// The interface languages, in the order of the language picker.
enum class AppLanguage { english, korean };

inline constexpr std::array allAppLanguages = {AppLanguage::english, AppLanguage::korean};

/// The persisted form: "en" or "ko".
QString rawValue(AppLanguage language);

/// Parses the persisted form, which is case-sensitive; none for any other text.
std::optional<AppLanguage> appLanguageFromRawValue(const QString& raw);

/// The language's own name, the same in every interface language.
QString title(AppLanguage language);

}  // namespace velun
