// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/open_outside.h"

#include "platform/desktop/linux/window_system.h"

#include <QDesktopServices>
#include <QProcess>
#include <QStandardPaths>

namespace velun {

bool openOutside(const QUrl& url) {
  const QString opener = QStandardPaths::findExecutable("xdg-open");
  if (opener.isEmpty()) return QDesktopServices::openUrl(url);
  QProcess process;
  process.setProgram(opener);
  process.setArguments({url.toString(QUrl::FullyEncoded)});
  process.setProcessEnvironment(environmentAtStart());
  return process.startDetached();
}

}  // namespace velun
