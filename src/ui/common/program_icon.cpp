// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/program_icon.h"

#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QStandardPaths>

namespace velun {

namespace {

using Entry = QHash<QString, QString>;

/// The keys of a desktop entry, without translations and further actions.
Entry readDesktopEntry(const QString& path) {
  Entry entry;
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) return entry;
  constexpr qint64 kMaxLineLength = 4096;
  bool isInside = false;
  while (!file.atEnd()) {
    const QString line = QString::fromUtf8(file.readLine(kMaxLineLength)).trimmed();
    if (line.startsWith(u'[')) {
      if (isInside) break;
      isInside = line == QLatin1String("[Desktop Entry]");
    } else if (isInside) {
      entry.insert(line.section(u'=', 0, 0).trimmed(), line.section(u'=', 1).trimmed());
    }
  }
  return entry;
}

bool isEntryOf(const Entry& entry, const QString& program) {
  const QString command = QFileInfo(entry.value("Exec").section(u' ', 0, 0)).fileName();
  for (const QString& name : {entry.value("Name"), entry.value("StartupWMClass"), command}) {
    if (name.compare(program, Qt::CaseInsensitive) == 0) return true;
  }
  return false;
}

QIcon iconNamed(const QString& name) {
  if (!QFileInfo(name).isAbsolute()) return QIcon::fromTheme(name);
  return QFileInfo::exists(name) ? QIcon(name) : QIcon();
}

/// The icon of an installed program; null if none has this name, or its icon cannot be found.
QIcon installedIcon(const QString& program) {
  const QStringList folders =
      QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
  for (const QString& folder : folders) {
    QDirIterator files(folder, {"*.desktop"}, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
      const Entry entry = readDesktopEntry(files.next());
      if (!isEntryOf(entry, program)) continue;
      const QIcon icon = iconNamed(entry.value("Icon"));
      if (!icon.isNull()) return icon;
    }
  }
  return {};
}

}  // namespace

QIcon programIcon(const QString& name) {
  if (name.isEmpty()) return {};
  // Most themes name icons after the command: "google-chrome" for "Google Chrome".
  QString command = name.toLower();
  command.replace(u' ', u'-');
  for (const QString& candidate : {command, command.section(u'-', 0, 0)}) {
    if (QIcon::hasThemeIcon(candidate)) return QIcon::fromTheme(candidate);
  }
  return installedIcon(name);
}

}  // namespace velun
