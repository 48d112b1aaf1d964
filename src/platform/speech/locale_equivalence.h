// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>
#include <QStringList>

namespace velun {

/// The one of `supported` that serves `identifier`: the same locale ("en-US" is "en_US"), else the
/// first of the same language written in the same script. "zh_TW" is not served by "zh_CN".
std::optional<QString> equivalentLocale(const QString& identifier, const QStringList& supported);

}  // namespace velun
