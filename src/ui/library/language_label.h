// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// The name of a language in a list. A file can contain any identifier, so one that is longer than
/// every real name is cut; it would make the window wider than the screen.
QString languageLabel(const QString& identifier);

}  // namespace velun
