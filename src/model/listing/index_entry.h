// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/listing/listed_session.h"

#include <optional>
#include <QDataStream>
#include <QString>

namespace velun {

inline constexpr QDataStream::Version kIndexStreamVersion = QDataStream::Qt_6_0;

/// Writes the entry of a session that has a stamp.
void writeEntry(QDataStream& stream, const ListedSession& session);

/// Reads an entry of a session in `folder`; nothing for bytes that are no entry.
std::optional<ListedSession> readEntry(QDataStream& stream, const QString& folder);

}  // namespace velun
