// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"

#include "support/memory_preferences.h"
#include "support/suite.h"

#include <QSignalSpy>

using namespace velun;

class LocalizationTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void loadsStoredKorean() {
    test::MemoryPreferences preferences;
    preferences.set("language", QString("ko"));
    Localization::shared().load(preferences);
    QCOMPARE(L("Stop", "중지"), QString("중지"));
    QCOMPARE(Localization::shared().locale(), QString("ko"));
  }

  void unknownStoredLanguageGivesEnglish_data() {
    QTest::addColumn<QString>("stored");
    QTest::newRow("upper case") << "KO";
    QTest::newRow("unknown") << "fr";
    QTest::newRow("empty") << "";
  }
  void unknownStoredLanguageGivesEnglish() {
    QFETCH(QString, stored);
    Localization::shared().setLanguage(AppLanguage::korean);
    test::MemoryPreferences preferences;
    preferences.set("language", stored);
    Localization::shared().load(preferences);
    QCOMPARE(L("Stop", "중지"), QString("Stop"));
    QCOMPARE(Localization::shared().locale(), QString("en"));
  }

  void missingLanguageGivesEnglish() {
    Localization::shared().setLanguage(AppLanguage::korean);
    Localization::shared().load(test::MemoryPreferences());
    QCOMPARE(Localization::shared().language(), AppLanguage::english);
  }

  void onlyADifferentLanguageIsAnnounced() {
    const QSignalSpy spy(&Localization::shared(), &Localization::languageChanged);
    Localization::shared().setLanguage(AppLanguage::english);
    QCOMPARE(spy.count(), 0);
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(spy.count(), 1);
  }

  void storedTextsKeepTheirLanguage() {
    const QString stored = L("Caption Session", "자막 세션");
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(stored, QString("Caption Session"));
    QCOMPARE(L("Caption Session", "자막 세션"), QString("자막 세션"));
  }

  void languagesAreNamedInTheInterfaceLanguage() {
    QCOMPARE(languageName("ko"), QString("Korean"));
    QCOMPARE(languageName("en_US"), QString("English (United States)"));
    QCOMPARE(languageName("en-US"), QString("English (United States)"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(languageName("en"), QString("영어"));
    QCOMPARE(languageName("en_US"), QString("영어(미국)"));
    QCOMPARE(languageName("ko"), QString("한국어"));
  }

  void unknownIdentifiersAreReturnedUnchanged() {
    QCOMPARE(languageName("zz_QQ"), QString("zz_QQ"));
    QCOMPARE(languageName("zz"), QString("zz"));
    QCOMPARE(languageName(""), QString());
  }

  void impossibleIdentifiersAreReturnedUnchanged_data() {
    QTest::addColumn<QString>("identifier");
    QTest::newRow("long variant") << "en_US_" + QString(200, u'x');
    QTest::newRow("long language") << QString(300, u'e');
    QTest::newRow("many variants") << "en" + QStringLiteral("_POSIX").repeated(60);
    QTest::newRow("long extension") << "ko-u-ca-" + QStringLiteral("gregory-").repeated(50) + "x";
    QTest::newRow("long keyword") << "ko@calendar=" + QString(300, u'x');
    QTest::newRow("long private use") << "ko-x-" + QStringLiteral("abcdefgh-").repeated(40) + "z";
    QTest::newRow("very long") << "ko_" + QString(300'000, u'k');
    QTest::newRow("not Latin, long") << "ko_" + QString(500, u'한');
    QTest::newRow("not Latin, shorter") << "ko_" + QString(100, u'한');
    QTest::newRow("not Latin, short") << QString("ko_한");
    QTest::newRow("only not Latin") << QString("한국어");
  }
  void impossibleIdentifiersAreReturnedUnchanged() {
    QFETCH(QString, identifier);
    for (const AppLanguage language : allAppLanguages) {
      Localization::shared().setLanguage(language);
      QCOMPARE(languageName(identifier), identifier);
    }
  }

  void textBehindAZeroIsNotIgnored() {
    const QString identifier = QString("ko") + QChar(0) + "junk";
    QCOMPARE(languageName(identifier), identifier);
  }

  void languagesKeepTheirOwnTitles() {
    for (const AppLanguage language : allAppLanguages) {
      Localization::shared().setLanguage(language);
      QCOMPARE(title(AppLanguage::english), QString("English"));
      QCOMPARE(title(AppLanguage::korean), QString("한국어"));
    }
  }
};

QTEST_GUILESS_MAIN(LocalizationTest)
#include "localization_test.moc"
