// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/linux_sound_settings.h"

#include "platform/desktop/linux/open_outside.h"

#include <array>
#include <QStandardPaths>

namespace velun {

namespace {

struct Candidate {
  /// The desktop's name in XDG_CURRENT_DESKTOP; empty for any desktop.
  const char* desktop;
  const char* program;
  const char* page;
};

constexpr std::array kCandidates = {
    Candidate{"GNOME", "gnome-control-center", "sound"},
    Candidate{"Unity", "gnome-control-center", "sound"},
    Candidate{"KDE", "systemsettings", "kcm_pulseaudio"},
    Candidate{"X-Cinnamon", "cinnamon-settings", "sound"},
    Candidate{"MATE", "mate-volume-control", ""},
    Candidate{"COSMIC", "cosmic-settings", "sound"},
    Candidate{"", "pavucontrol", ""},
    Candidate{"", "pavucontrol-qt", ""},
    Candidate{"", "pwvucontrol", ""},
};

}  // namespace

QStringList LinuxSoundSettings::command() {
  const QStringList desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
  for (const Candidate& candidate : kCandidates) {
    const QString desktop = QString::fromLatin1(candidate.desktop);
    if (!desktop.isEmpty() && !desktops.contains(desktop)) continue;
    const QString path = QStandardPaths::findExecutable(QString::fromLatin1(candidate.program));
    if (path.isEmpty()) continue;
    QStringList command{path};
    if (*candidate.page) command << QString::fromLatin1(candidate.page);
    return command;
  }
  return {};
}

void LinuxSoundSettings::open() {
  QStringList arguments = command();
  if (arguments.isEmpty()) return;
  const QString program = arguments.takeFirst();
  startOutside(program, arguments);
}

}  // namespace velun
