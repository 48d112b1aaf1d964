// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/autostart_entry.h"

#include "language/localization.h"
#include "platform/foundation/atomic_file.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/file_error.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>
#include <utility>

namespace velun {

namespace {

/// A path as an argument of the key Exec: quoted, and escaped once for the quotes and once for the
/// file.
QString quotedForExec(const QString& path) {
  QString quoted;
  for (const QChar c : path) {
    if (c == u'"' || c == u'`' || c == u'$') quoted += QStringLiteral("\\\\");
    quoted += c == u'\\'  ? QStringLiteral("\\\\\\\\")
              : c == u'%' ? QStringLiteral("%%")
                          : QString(c);
  }
  return u'"' + quoted + u'"';
}

Failure writeFailure(const QString& path) {
  return Failure(L("“" + path + "” couldn’t be written. Check the permissions of its folder.",
                   "‘" + path + "’에 쓸 수 없습니다. 폴더의 권한을 확인하세요."));
}

}  // namespace

AutostartEntry::AutostartEntry(const QString& name, QString program)
    : name_(name),
      program_(std::move(program)),
      path_(QStandardPaths::writableLocation(QStandardPaths::ConfigLocation) + "/autostart/" +
            name + ".desktop") {}

bool AutostartEntry::isPossible() const {
  return !QFileInfo::exists("/.flatpak-info");
}

bool AutostartEntry::isEnabled() const {
  QFile file(path_);
  if (!file.open(QIODevice::ReadOnly)) return false;
  // GNOME and others turn an entry off instead of removing it.
  for (const QByteArray& line : file.readAll().split('\n')) {
    const QByteArray setting = line.simplified().replace(" ", "");
    if (setting == "Hidden=true" || setting == "X-GNOME-Autostart-enabled=false") return false;
  }
  return true;
}

void AutostartEntry::setEnabled(bool enabled) {
  if (!enabled) {
    if (QFile::exists(path_) && !QFile::remove(path_)) throw writeFailure(path_);
    return;
  }
  const QString entry = QStringLiteral(
                            "[Desktop Entry]\nType=Application\nName=Velun\nExec=%1\nIcon=%2\n"
                            "Terminal=false\nX-GNOME-Autostart-enabled=true\n")
                            .arg(quotedForExec(program_), name_);
  try {
    QDir().mkpath(QFileInfo(path_).path());
    writeFileAtomically(path_, entry.toUtf8(), false);
  } catch (const FileError&) {
    throw writeFailure(path_);
  }
}

}  // namespace velun
