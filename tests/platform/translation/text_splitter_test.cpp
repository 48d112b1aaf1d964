// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/text_splitter.h"

#include "platform/translation/student/student_translator.h"
#include "platform/translation/support/toy_models.h"
#include "support/suite.h"

#include <QTest>

using namespace velun;
using namespace velun::test;

namespace {

// Texts of up to this many characters fit.
FitsModel upTo(qsizetype characters) {
  return [characters](const QString& text) {
    return text.size() <= characters;
  };
}

}  // namespace

/// Texts that are too long for a model.
class TextSplitterTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void splits_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("language");
    QTest::addColumn<int>("longest");
    QTest::addColumn<QStringList>("pieces");
    const auto row = [](const char* name, const char* text, const char* language, int longest,
                        const QStringList& pieces) {
      QTest::newRow(name) << QString::fromUtf8(text) << QString::fromLatin1(language) << longest
                          << pieces;
    };
    row("empty", "", "en", 20, {});
    row("one sentence", "A cat.", "en", 20, {"A cat."});
    row("sentences", "A cat. A dog! A bird?", "en", 20, {"A cat.", "A dog!", "A bird?"});
    row("abbreviation", "Mr. Smith came. He left.", "en", 20, {"Mr. Smith came.", "He left."});
    row("Japanese", "猫です。犬です。", "ja", 20, {"猫です。", "犬です。"});
    row("clauses", "one two, three four, five six", "en", 21, {"one two, three four,", "five six"});
    row("full-width clauses", "一二三，四五六，七八九", "zh", 8, {"一二三，四五六，", "七八九"});
    row("number with a comma", "it costs 1,000,000 won, or so", "en", 24,
        {"it costs 1,000,000 won,", "or so"});
    row("words", "one two three four", "en", 9, {"one two", "three", "four"});
    row("one long word", "abcdefghijkl", "en", 5, {"abcdefghijkl"});
    row("long word among others", "ab abcdefghijkl cd", "en", 5, {"ab", "abcdefghijkl", "cd"});
    row("clause that fits and one that does not", "ab, cd ef gh ij", "en", 6,
        {"ab,", "cd ef", "gh ij"});
  }

  void splits() {
    QFETCH(QString, text);
    QFETCH(QString, language);
    QFETCH(int, longest);
    QFETCH(QStringList, pieces);
    QCOMPARE(splitForModel(text, language, upTo(longest)), pieces);
  }

  void translatesEverySentenceOfAText() {
    StudentTranslator translator(toyFiles(QStringLiteral("enes")),
                                 {QStringLiteral("en"), QStringLiteral("es")});
    QCOMPARE(
        translator.translate(
            QStringLiteral("Maria sees the red house. Excuse me, Peter! The dog is here."), {}),
        translator.translate(QStringLiteral("Maria sees the red house."), {}) + u' ' +
            translator.translate(QStringLiteral("Excuse me, Peter!"), {}) + u' ' +
            translator.translate(QStringLiteral("The dog is here."), {}));
  }

  // Ten times as many tokens as the model accepts at once; each piece becomes one sentence.
  void aVeryLongTextIsTranslatedInPieces() {
    StudentTranslator translator(toyFiles(QStringLiteral("enko")),
                                 {QStringLiteral("en"), QStringLiteral("ko")});
    const QString translation = translator.translate(
        QStringLiteral("Maria sees the red house because it is Sunday, ").repeated(60), {});
    QVERIFY2(translation.count(QStringLiteral("마리아는")) >= 10, qUtf8Printable(translation));
  }

  void textsInAnotherScriptAreHarmless() {
    StudentTranslator translator(toyFiles(QStringLiteral("enko")),
                                 {QStringLiteral("en"), QStringLiteral("ko")});
    for (const char* text :
         {"안녕하세요 여러분", "Привет, мир", "👩‍👩‍👧 1 🎉", "\uFEFFa"}) {
      translator.translate(QString::fromUtf8(text), {});
    }
    QCOMPARE(translator.translate(QStringLiteral("Maria sees the red house."), {}),
             QStringLiteral("마리아는 빨간 집 봅니다."));
  }

  void speedIsReported() {
    double reported = 0;
    StudentTranslator translator(
        toyFiles(QStringLiteral("enes")), {QStringLiteral("en"), QStringLiteral("es")},
        [&reported](double millisecondsPerToken) { reported = millisecondsPerToken; });
    translator.translate(QStringLiteral("Maria sees the red house."), {});
    QVERIFY(reported > 0);
  }
};

QTEST_GUILESS_MAIN(TextSplitterTest)
#include "text_splitter_test.moc"
