// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QString>

namespace velun {

/// The icon of the program with this name in the desktop's icon theme; null if there is none.
QIcon programIcon(const QString& name);

}  // namespace velun
