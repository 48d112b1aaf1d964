// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/program_icon.h"

#include "support/suite.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QPixmap>
#include <QTemporaryDir>

using namespace velun;

namespace {

const QColor kColor(20, 140, 90);

}  // namespace

class ProgramIconTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY(QDir().mkpath(folder_.filePath("applications/vendor")));
    qputenv("XDG_DATA_HOME", folder_.path().toUtf8());
    qputenv("XDG_DATA_DIRS", folder_.path().toUtf8());
    QPixmap pixmap(16, 16);
    pixmap.fill(kColor);
    const QString icon = folder_.filePath("icon.png");
    QVERIFY(pixmap.save(icon));
    write("vendor/player.desktop",
          "# A comment\n[Desktop Entry]\nName=Fine Player\nName[ko]=재생기\n"
          "Exec=/usr/bin/fineplay --quiet %U\nStartupWMClass=FinePlayerWindow\nIcon=" +
              icon.toUtf8() + "\n\n[Desktop Action New]\nName=Other\nExec=other\n");
    write("broken.desktop", "Name=Broken\nno key\n=\n[Desktop Entry\n\xff\xfe");
    write("lost.desktop", "[Desktop Entry]\nName=Lost\nIcon=/nowhere/icon.png\n");
  }

  void findsTheIconOfAnInstalledProgram_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("isFound");
    QTest::newRow("name") << "Fine Player" << true;
    QTest::newRow("name in other letters") << "fine player" << true;
    QTest::newRow("command") << "fineplay" << true;
    QTest::newRow("class of its windows") << "FinePlayerWindow" << true;
    QTest::newRow("name of an action") << "Other" << false;
    QTest::newRow("a part of the name") << "Fine" << false;
    QTest::newRow("damaged entry") << "Broken" << false;
    QTest::newRow("icon that does not exist") << "Lost" << false;
    QTest::newRow("no name") << "" << false;
    QTest::newRow("unknown") << "Something Else" << false;
  }
  void findsTheIconOfAnInstalledProgram() {
    QFETCH(QString, name);
    QFETCH(bool, isFound);
    const QIcon icon = programIcon(name);
    QCOMPARE(!icon.isNull(), isFound);
    if (isFound) QCOMPARE(icon.pixmap(16).toImage().pixelColor(8, 8), kColor);
  }

 private:
  void write(const QString& name, const QByteArray& content) {
    QFile file(folder_.filePath("applications/" + name));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(content);
  }

  QTemporaryDir folder_;
};

QTEST_MAIN(ProgramIconTest)
#include "program_icon_test.moc"
