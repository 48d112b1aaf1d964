// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QByteArray>
#include <QJsonObject>

namespace velun {

/// The members of a preference file: one JSON object. None for anything else. Values of kinds
/// that no preference has are kept, so that writing one value back loses no other.
std::optional<QJsonObject> readPreferenceDocument(const QByteArray& bytes);

}  // namespace velun
