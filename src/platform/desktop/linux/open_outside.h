// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QUrl>

namespace velun {

/// Opens a page or a folder with the desktop's program for it, which gets the environment that this
/// program was started with. Returns whether a program was started. Main thread.
bool openOutside(const QUrl& url);

}  // namespace velun
