// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/program_icon.h"

namespace velun {

QIcon programIcon(const QString& name) {
  // Most themes name icons after the command: "google-chrome" for "Google Chrome".
  QString command = name.toLower();
  command.replace(u' ', u'-');
  for (const QString& candidate : {command, command.section(u'-', 0, 0)}) {
    if (!candidate.isEmpty() && QIcon::hasThemeIcon(candidate)) return QIcon::fromTheme(candidate);
  }
  return {};
}

}  // namespace velun
