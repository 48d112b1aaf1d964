// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/autostart_entry.h"

#include "platform/foundation/failure.h"
#include "support/suite.h"
#include "support/test_folder.h"

#include <memory>
#include <QFile>

using namespace velun;

class AutostartEntryTest final : public test::Suite {
  Q_OBJECT

 private:
  static constexpr auto kName = "autostart/velun.desktop";

  std::unique_ptr<test::TestFolder> folder_;

 private Q_SLOTS:
  void init() {
    Suite::init();
    folder_ = std::make_unique<test::TestFolder>();
    qputenv("XDG_CONFIG_HOME", folder_->path().toUtf8());
  }

  void writesAndRemovesTheEntry() {
    AutostartEntry entry("velun", "/opt/a folder/velun");
    QVERIFY(!entry.isEnabled());
    entry.setEnabled(true);
    QVERIFY(entry.isEnabled());
    QCOMPARE(entry.path(), folder_->path() + "/autostart/velun.desktop");
    const QByteArray contents = folder_->contents(kName);
    QVERIFY(contents.startsWith("[Desktop Entry]\n"));
    QVERIFY(contents.contains("\nExec=\"/opt/a folder/velun\"\n"));
    entry.setEnabled(false);
    QVERIFY(!entry.isEnabled());
    QVERIFY(!QFile::exists(entry.path()));
    entry.setEnabled(false);
  }

  void specialCharactersOfThePathAreEscaped() {
    AutostartEntry entry("velun", "/a\"b$c\\d%e");
    entry.setEnabled(true);
    QVERIFY(folder_->contents(kName).contains("Exec=\"/a\\\\\"b\\\\$c\\\\\\\\d%%e\""));
  }

  void anEntryThatTheDesktopTurnedOffIsOff_data() {
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("hidden") << QByteArray("Hidden=true");
    QTest::newRow("GNOME") << QByteArray("X-GNOME-Autostart-enabled = false");
  }
  void anEntryThatTheDesktopTurnedOffIsOff() {
    QFETCH(QByteArray, line);
    AutostartEntry entry("velun", "/velun");
    entry.setEnabled(true);
    folder_->write(kName, folder_->contents(kName).replace("X-GNOME-Autostart-enabled=true", line));
    QVERIFY(!entry.isEnabled());
    entry.setEnabled(true);
    QVERIFY(entry.isEnabled());
  }

  void aFolderThatCannotBeMadeIsReported() {
    folder_->write("autostart", "not a folder");
    AutostartEntry entry("velun", "/velun");
    QVERIFY_EXCEPTION_THROWN(entry.setEnabled(true), Failure);
    QVERIFY(!entry.isEnabled());
  }
};

QTEST_GUILESS_MAIN(AutostartEntryTest)
#include "autostart_entry_test.moc"
