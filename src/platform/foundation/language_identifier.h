// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// The language code of a language or locale identifier: "en" for "en_US"; empty if it has none.
QString languageCode(const QString& identifier);

/// The language of a locale with its script, if the identifier has one, and without the region:
/// "en" for "en_US", "zh-Hans" for "zh_Hans_CN".
QString languageOfLocale(const QString& localeID);

}  // namespace velun
