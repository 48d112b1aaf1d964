// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace velun {

/// The sentences of a text in `localeID` ("en_US"), in order, white space and all: joined they
/// give the text again. Follows the language's own rules, with no break after common
/// abbreviations. Any thread.
QStringList sentences(const QString& text, const QString& localeID);

}  // namespace velun
