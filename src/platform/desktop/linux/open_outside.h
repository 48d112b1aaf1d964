// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringList>
#include <QUrl>

namespace velun {

/// Opens a page or a folder with the desktop's program for it, which gets the environment that this
/// program was started with. Returns whether a program was started. Main thread.
bool openOutside(const QUrl& url);

/// Starts a program that outlives this one, with the environment that this program was started
/// with. Returns whether it was started. Main thread.
bool startOutside(const QString& program, const QStringList& arguments);

}  // namespace velun
