// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/language_search.h"

#include "support/suite.h"

using namespace velun;

namespace {

LanguageMatch match(const QString& identifier, const QString& typed) {
  return matchLanguage(languageSearchNames(identifier), foldedLanguageName(typed));
}

}  // namespace

class LanguageSearchTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void findsALanguageByEveryName_data() {
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<QString>("typed");
    QTest::newRow("its own name") << "de_DE"
                                  << "deutsch";
    QTest::newRow("English") << "de_DE"
                             << "German";
    QTest::newRow("Korean") << "de_DE"
                            << "독일어";
    QTest::newRow("the first letters") << "de"
                                       << "ger";
    QTest::newRow("the identifier") << "de_DE"
                                    << "de_d";
    QTest::newRow("upper case") << "de_DE"
                                << "DEUTSCH";
    QTest::newRow("without accents") << "fr_FR"
                                     << "francais";
    QTest::newRow("with accents") << "fr_FR"
                                  << "français";
    QTest::newRow("without a cedilla that the name has") << "tr_TR"
                                                         << "turkce";
    QTest::newRow("the region in English") << "en_US"
                                           << "united";
    QTest::newRow("the region in Korean") << "en_US"
                                          << "미국";
    QTest::newRow("another script") << "ru_RU"
                                    << "русский";
    QTest::newRow("Chinese letters") << "zh_CN"
                                     << "中文";
    QTest::newRow("Japanese") << "ja"
                              << "日本";
    QTest::newRow("half of a Korean syllable") << "de_DE"
                                               << "도";
    QTest::newRow("one Korean letter") << "de_DE"
                                       << "ㄷ";
    QTest::newRow("a Korean syllable on its way to the next") << "ru_RU"
                                                              << "럿";
    QTest::newRow("with spaces around it") << "ko"
                                           << "  korean ";
    QTest::newRow("full-width letters") << "de"
                                        << "ｄｅｕｔ";
    QTest::newRow("nothing typed") << "de"
                                   << "";
  }
  void findsALanguageByEveryName() {
    QFETCH(QString, identifier);
    QFETCH(QString, typed);
    QCOMPARE(match(identifier, typed), LanguageMatch::wordStart);
  }

  void theMiddleOfAWordMatchesLess() {
    QCOMPARE(match("de", "erman"), LanguageMatch::inside);
    QCOMPARE(match("de", "일어"), LanguageMatch::inside);
  }

  void otherLanguagesDoNotMatch() {
    QCOMPARE(match("fr_FR", "deutsch"), LanguageMatch::none);
    QCOMPARE(match("ko", "독일어"), LanguageMatch::none);
  }

  void unknownIdentifiersAreFoundByThemselves() {
    QCOMPARE(match("zz", "zz"), LanguageMatch::wordStart);
    QCOMPARE(match("", "a"), LanguageMatch::none);
  }
};

QTEST_GUILESS_MAIN(LanguageSearchTest)
#include "language_search_test.moc"
