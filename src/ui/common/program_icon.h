// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QIcon>
#include <QString>

namespace velun {

/// The icon of the program with this name: that of the desktop's icon theme, else the one that an
/// installed program of this name, window class or command has. Null if there is none. Reads the
/// desktop entries of all programs if the theme has no icon. Main thread.
QIcon programIcon(const QString& name);

}  // namespace velun
