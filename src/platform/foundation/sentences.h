// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace velun {

/// Splits a text in the language of `localeID` ("en_US") into sentences. White space is kept:
/// joined, they are the text. Does not split after common abbreviations. Any thread.
QStringList sentences(const QString& text, const QString& localeID);

}  // namespace velun
