// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/language_identifier.h"

#include "support/suite.h"

using namespace velun;

class LanguageIdentifierTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void parts_data() {
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<QString>("code");
    QTest::addColumn<QString>("language");
    QTest::newRow("language") << "ko"
                              << "ko"
                              << "ko";
    QTest::newRow("region") << "en_US"
                            << "en"
                            << "en";
    QTest::newRow("hyphen") << "pt-BR"
                            << "pt"
                            << "pt";
    QTest::newRow("script") << "zh_Hans"
                            << "zh"
                            << "zh-Hans";
    QTest::newRow("script and region") << "zh-Hant-TW"
                                       << "zh"
                                       << "zh-Hant";
    QTest::newRow("three letters for two") << "kor"
                                           << "ko"
                                           << "ko";
    QTest::newRow("three letters") << "yue_HK"
                                   << "yue"
                                   << "yue";
    QTest::newRow("undetermined") << "und"
                                  << ""
                                  << "";
    QTest::newRow("empty") << ""
                           << ""
                           << "";
    QTest::newRow("only a region") << "_US"
                                   << ""
                                   << "";
  }
  void parts() {
    QFETCH(QString, identifier);
    QTEST(languageCode(identifier), "code");
    QTEST(languageOfLocale(identifier), "language");
  }
};

QTEST_GUILESS_MAIN(LanguageIdentifierTest)
#include "language_identifier_test.moc"
