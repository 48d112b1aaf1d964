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
  return startOutside(opener, {url.toString(QUrl::FullyEncoded)});
}

bool startOutside(const QString& program, const QStringList& arguments) {
  QProcess process;
  process.setProgram(program);
  process.setArguments(arguments);
  process.setProcessEnvironment(environmentAtStart());
  return process.startDetached();
}

}  // namespace velun
