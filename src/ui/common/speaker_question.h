// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>
#include <QStringList>

namespace velun {

/// Asks for another name for `speaker` (model/speaker.h). The user can also choose one of
/// `speakers`, which makes the two one. Returns nullopt if the user cancels or changes nothing.
std::optional<QString> askSpeaker(const QString& speaker, const QStringList& speakers);

}  // namespace velun
