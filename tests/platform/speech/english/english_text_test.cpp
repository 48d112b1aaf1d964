// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/english/english_text.h"

#include "growing_draft.h"
#include "spoken_numbers.h"
#include "support/suite.h"

#include <QLocale>
#include <unicode/rbnf.h>

using namespace velun;
using test::kSpokenNumbers;

namespace {

QString written(const QString& text, EnglishTextOptions options = {}) {
  return joinedText(writeEnglish(captionWords(text), options));
}

QString draft(const QString& text) {
  return written(text, {true, true});
}

/// ICU's spelling of a number, without hyphens and commas: "twenty five".
class Speller {
 public:
  Speller() : format_(icu::URBNF_SPELLOUT, icu::Locale("en_US"), status_) {}

  QString spell(qint64 value, const char* rules) {
    icu::UnicodeString text;
    icu::FieldPosition position;
    format_.format(static_cast<int64_t>(value), icu::UnicodeString(rules), text, position, status_);
    std::string utf8;
    text.toUTF8String(utf8);
    return QString::fromStdString(utf8).replace(u'-', u' ').remove(u',');
  }
  bool hasFailed() const { return U_FAILURE(status_); }

 private:
  UErrorCode status_ = U_ZERO_ERROR;
  icu::RuleBasedNumberFormat format_;
};

}  // namespace

class EnglishTextTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void numbersAreWrittenAsInCaptions_data() {
    QTest::addColumn<QString>("spoken");
    QTest::addColumn<QString>("expected");
    for (const auto& each : kSpokenNumbers) {
      QTest::newRow(each.spoken) << QString(each.spoken) << QString(each.written);
    }
  }
  void numbersAreWrittenAsInCaptions() {
    QFETCH(QString, spoken);
    QFETCH(QString, expected);
    QCOMPARE(written(spoken), expected);
    QCOMPARE(written("we say " + spoken), "we say " + expected);
    QVERIFY(test::isStable(captionWords(spoken)));
    QVERIFY(test::isStable(captionWords(spoken + " and then we go on")));
  }

  void everyNumberThatIcuSpellsIsRead() {
    Speller speller;
    const QLocale english(QLocale::English, QLocale::UnitedStates);
    for (qint64 n = 10; n < 2'000'000; n = n < 3000 ? n + 1 : n * 13 / 12 + 7) {
      if (n % 1'000'000 == 0) continue;  // "1 million"
      for (const char* rules : {"%spellout-cardinal", "%spellout-cardinal-verbose"}) {
        QCOMPARE(written(speller.spell(n, rules) + " units"), english.toString(n) + " units");
      }
    }
    QVERIFY(!speller.hasFailed());
  }

  void everyOrdinalThatIcuSpellsIsRead() {
    Speller speller;
    for (qint64 n = 10; n < 1000; ++n) {
      if (n % 100 == 0) continue;  // "the hundredth time"
      const QString text = written("the " + speller.spell(n, "%spellout-ordinal") + " of May");
      QVERIFY2(text.startsWith(QString("the %1").arg(n)), qPrintable(text));
      QVERIFY2(text.endsWith("h of May") || (n % 10 >= 1 && n % 10 <= 3), qPrintable(text));
    }
    QVERIFY(!speller.hasFailed());
  }

  void everyYearThatIcuSpellsIsRead() {
    Speller speller;
    for (qint64 n = 1100; n < 2100; ++n) {
      const QString spoken = "in " + speller.spell(n, "%spellout-numbering-year") + " we met";
      QCOMPARE(written(spoken), QString("in %1 we met").arg(n));
    }
    QVERIFY(!speller.hasFailed());
  }

  void textWithoutNumbersIsUnchanged_data() {
    QTest::addColumn<QString>("text");
    for (const char* text :
         {"", "Hello.", "It was a good point, and I said so.", "Oh, I see. A few of us went.",
          "Wait... what?", "안녕하세요 여러분", "Il a vingt ans."}) {
      QTest::newRow(text) << QString(text);
    }
  }
  void textWithoutNumbersIsUnchanged() {
    QFETCH(QString, text);
    QCOMPARE(written(text), text);
    QCOMPARE(draft(text), text);
  }

  void marksAndCaseStay_data() {
    QTest::addColumn<QString>("spoken");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* spoken, const char* expected) {
      QTest::newRow(spoken) << QString(spoken) << QString(expected);
    };
    row("Twelve percent, he said.", "12%, he said.");
    row("It was nineteen eighty four. Two years later", "It was 1984. Two years later");
    row("Did it cost Five Dollars?", "Did it cost $5?");
    row("Come at three p m.", "Come at 3 p.m.");
    row("At three p m? Yes.", "At 3 p.m.? Yes.");
    row("I have Three Million Dollars!", "I have $3 Million!");
    row("In March fifth place counts", "In March 5th place counts");
    row("We march one by one", "We march one by one");
  }
  void marksAndCaseStay() {
    QFETCH(QString, spoken);
    QFETCH(QString, expected);
    QCOMPARE(written(spoken), expected);
  }

  void wordsAreNotJoinedAcrossMarks_data() {
    QTest::addColumn<QString>("spoken");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* spoken, const char* expected) {
      QTest::newRow(spoken) << QString(spoken) << QString(expected);
    };
    row("I was twenty. Five came.", "I was 20. Five came.");
    row("twenty, five", "20, five");
    row("one hundred, and five more", "100, and five more");
    row("three. Thirty p m", "three. 30 PM");
    row("five. Dollars matter", "five. Dollars matter");
    row("nineteen? Eighty four!", "19? 84!");
    row("the u. S a", "the u. S a");
  }
  void wordsAreNotJoinedAcrossMarks() {
    QFETCH(QString, spoken);
    QFETCH(QString, expected);
    QCOMPARE(written(spoken), expected);
  }

  void wordsAreNotJoinedAcrossAPause() {
    CaptionWords words = captionWords("twenty five u s");
    words[0].isBeforePause = true;
    words[2].isBeforePause = true;
    QCOMPARE(joinedText(writeEnglish(words, {})), QString("20 five u s"));
  }

  void joinedWordsHaveTheTimesOfTheirParts() {
    CaptionWords words = captionWords("about three million dollars.");
    double time = 1;
    for (CaptionWord& word : words) {
      word.begin = time;
      word.end = time + 0.5;
      time += 1;
    }
    const CaptionWords expected = {
        {"about", "", 1, 1.5}, {"$3", "", 2, 2.5}, {"million", ".", 3, 4.5}};
    QCOMPARE(writeEnglish(words, {}), expected);
  }

  void aNumberInADraftWaitsForTheWordsThatDecide() {
    QCOMPARE(draft("we need twenty"), QString("we need twenty"));
    QCOMPARE(draft("we need twenty five"), QString("we need twenty five"));
    QCOMPARE(draft("we need twenty five dollars"), QString("we need twenty five dollars"));
    QCOMPARE(draft("we need twenty five dollars and"), QString("we need twenty five dollars and"));
    QCOMPARE(draft("we need twenty five dollars and a"), QString("we need $25 and a"));
    QCOMPARE(draft("we need twenty five people"), QString("we need 25 people"));
    QCOMPARE(draft("it was nineteen eighty four."), QString("it was 1984."));
  }

  void numbersStayWordsWhenTheSettingIsOff() {
    QCOMPARE(written("in nineteen eighty four i had five dollars [unk] in the u s a", {false}),
             QString("in nineteen eighty four I had five dollars in the USA"));
  }

  void iIsACapital() {
    QCOMPARE(written("i think i'm sure i've said i'd go and i'll stay"),
             QString("I think I'm sure I've said I'd go and I'll stay"));
    QCOMPARE(written("it is in iran"), QString("it is in iran"));
    QCOMPARE(draft("so i"), QString("so I"));
  }

  void unknownWordsAreDropped() {
    QCOMPARE(written("the [unk] is here [unk]."), QString("the is here."));
    QCOMPARE(written("[unk]"), QString());
    QCOMPARE(written("twenty [unk] five"), QString("20 five"));
  }

  void spelledLettersAreJoinedWhereItIsSafe_data() {
    QTest::addColumn<QString>("spoken");
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* spoken, const char* expected) {
      QTest::newRow(spoken) << QString(spoken) << QString(expected);
    };
    row("the u s a is", "the USA is");
    row("the u s is", "the US is");
    row("on t v tonight", "on TV tonight");
    row("the f b i and the c i a", "the FBI and the CIA");
    row("the f b i a year ago", "the FBI a year ago");
    row("the b b c i think", "the b b c I think");
    row("a t v in a p c", "a TV in a PC");
    row("the a p i of it", "the API of it");
    row("there is a i mean", "there is a I mean");
    row("he s s said", "he s s said");
    row("the c e o", "the CEO");
    row("both c e o's and the c e o's wife", "both CEO's and the CEO's wife");
    row("changes e g switching", "changes e.g. switching");
    row("we met. e g on monday", "we met. E.g. on monday");
    row("after w e b Du Bois", "after W E B Du Bois");
    row("after w e b. Du Bois", "after W E B. Du Bois");
    row("by Doctor T J Eckleburg", "by Doctor T J Eckleburg");
    row("we build p d o. And those", "we build PDO. And those");
    row("the u s Senate and c e o Cook", "the US Senate and CEO Cook");
    row("in the g t f. U S troops", "in the GTF. US troops");
    row("a b", "a b");
    row("spell it j o h n s o n", "spell it j o h n s o n");
    row("vitamin b", "vitamin b");
  }
  void spelledLettersAreJoinedWhereItIsSafe() {
    QFETCH(QString, spoken);
    QFETCH(QString, expected);
    QCOMPARE(written(spoken), expected);
    QVERIFY(test::isStable(captionWords(spoken)));
  }

  void textSplitsIntoWordsAndMarks() {
    const CaptionWords expected = {{"Well", "..."}, {"at", ""},     {"3", ""},  {"p.m.", ""},
                                   {"p.m.", ","},   {"$5.20", "."}, {"...", ""}};
    QCOMPARE(captionWords(" Well...  at 3 p.m. p.m., $5.20. ... "), expected);
    QCOMPARE(joinedText(expected), QString("Well... at 3 p.m. p.m., $5.20. ..."));
  }
};

QTEST_GUILESS_MAIN(EnglishTextTest)
#include "english_text_test.moc"
