// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/updates/version_order.h"

#include "support/suite.h"

using namespace velun;

class VersionOrderTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void newerVersionsAreGreater_data() {
    QTest::addColumn<QString>("earlier");
    QTest::addColumn<QString>("later");
    QTest::newRow("numbers, not texts") << "1.9"
                                        << "1.10";
    QTest::newRow("patch") << "1.2.3"
                           << "1.2.4";
    QTest::newRow("longer") << "1.2"
                            << "1.2.1";
    QTest::newRow("major") << "9.9.9"
                           << "10.0";
    QTest::newRow("very long numbers") << "1.20251231235959999999"
                                       << "1.20260101000000000000";
    QTest::newRow("beta before release") << "2.0b1"
                                         << "2.0";
    QTest::newRow("betas by number") << "2.0b2"
                                     << "2.0b10";
    QTest::newRow("alpha before beta") << "2.0-alpha.3"
                                       << "2.0-beta.1";
    QTest::newRow("candidate before release") << "2.0.0-rc1"
                                              << "2.0";
    QTest::newRow("patch after candidate") << "2.0-rc1"
                                           << "2.0.1";
    QTest::newRow("leading v") << "v1.0"
                               << "1.0.1";
    QTest::newRow("nothing") << ""
                             << "0.1";
  }
  void newerVersionsAreGreater() {
    QFETCH(QString, earlier);
    QFETCH(QString, later);
    QVERIFY(compareVersions(earlier, later) < 0);
    QVERIFY(compareVersions(later, earlier) > 0);
  }

  void equivalentVersionsAreEqual_data() {
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("right");
    QTest::newRow("same") << "1.2.3"
                          << "1.2.3";
    QTest::newRow("trailing zeros") << "1.2"
                                    << "1.2.0.0";
    QTest::newRow("leading zeros") << "1.02"
                                   << "1.2";
    QTest::newRow("leading v") << "v1.2"
                               << "1.2";
    QTest::newRow("build") << "1.2+deb12"
                           << "1.2";
    QTest::newRow("separators") << "1.2-b3"
                                << "1.2b3";
    QTest::newRow("letters' case") << "1.2B3"
                                   << "1.2b3";
  }
  void equivalentVersionsAreEqual() {
    QFETCH(QString, left);
    QFETCH(QString, right);
    QVERIFY(compareVersions(left, right) == 0);
    QVERIFY(compareVersions(right, left) == 0);
  }
};

QTEST_GUILESS_MAIN(VersionOrderTest)
#include "version_order_test.moc"
