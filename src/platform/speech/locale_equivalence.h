// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>
#include <QStringList>

namespace velun {

/// The supported locale for `identifier`: the same locale ("en-US" is "en_US"), else the first one
/// of the same language and script. "zh_CN" is not one for "zh_TW".
std::optional<QString> equivalentLocale(const QString& identifier, const QStringList& supported);

}  // namespace velun
