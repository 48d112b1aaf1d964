// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// The language code of a language or locale identifier: "en" of "en_US"; empty when it has none.
QString languageCode(const QString& identifier);

/// The language of a locale, with the script when the identifier names one but never the region:
/// "en" of "en_US", "zh-Hans" of "zh_Hans_CN".
QString languageOfLocale(const QString& localeID);

}  // namespace velun
