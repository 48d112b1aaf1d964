// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/linux_sound_settings.h"

#include "support/suite.h"
#include "support/test_folder.h"

#include <QFile>

using namespace velun;

class LinuxSoundSettingsTest final : public test::Suite {
  Q_OBJECT

 private:
  void install(const QString& program, const QByteArray& script = "#!/bin/sh\n") {
    folder_->write(program, script);
    QFile::setPermissions(folder_->path(program), QFile::ReadOwner | QFile::ExeOwner);
  }

  std::unique_ptr<test::TestFolder> folder_;

 private Q_SLOTS:
  void init() {
    Suite::init();
    folder_ = std::make_unique<test::TestFolder>();
    qputenv("PATH", folder_->path().toUtf8());
    qputenv("XDG_CURRENT_DESKTOP", "");
  }

  void nothingIsOfferedWithoutAProgram() {
    LinuxSoundSettings settings;
    QVERIFY(!settings.isAvailable());
    settings.open();
  }

  void theRunningDesktopsProgramComesFirst() {
    install("pavucontrol");
    install("gnome-control-center");
    const LinuxSoundSettings settings;
    QVERIFY(settings.isAvailable());
    QCOMPARE(settings.command(), QStringList(folder_->path("pavucontrol")));
    qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    QCOMPARE(settings.command(), QStringList({folder_->path("gnome-control-center"), "sound"}));
    qputenv("XDG_CURRENT_DESKTOP", "KDE");
    QCOMPARE(settings.command(), QStringList(folder_->path("pavucontrol")));
  }

  void startsTheProgram() {
    install("pavucontrol", "#!/bin/sh\necho started > '" + folder_->path("log").toUtf8() + "'\n");
    LinuxSoundSettings().open();
    QTRY_COMPARE(folder_->contents("log"), QByteArray("started\n"));
  }
};

QTEST_GUILESS_MAIN(LinuxSoundSettingsTest)
#include "linux_sound_settings_test.moc"
