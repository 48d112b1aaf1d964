// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/built_in/sentence_writer.h"

#include "support/suite.h"

#include <QHash>
#include <QStringList>

using namespace velun;

namespace {

/// What the punctuation model is asked and replies.
struct Script {
  QStringList texts;
  QHash<QString, QString> replies;
  std::optional<QString> failure;
};

class ScriptedPunctuation final : public PunctuationRestorer {
 public:
  explicit ScriptedPunctuation(Script& script) : script_(script) {}
  void load() override {}
  std::optional<QString> failure() const override { return script_.failure; }
  QString restored(const QString& text) override {
    script_.texts.append(text);
    return script_.replies.value(text, text);
  }
  void cancel() override {}

 private:
  Script& script_;
};

/// Words of 0.3 s without pauses; "|" is a pause of 0.3 s, "+" one of 0.7 s.
std::vector<RecognizedWord> heard(const QString& text, double begin = 1) {
  const QHash<QString, double> pauses = {{"|", 0.3}, {"+", 0.7}};
  std::vector<RecognizedWord> words;
  for (const QString& word : text.split(u' ', Qt::SkipEmptyParts)) {
    if (pauses.contains(word)) {
      begin += pauses[word];
    } else {
      words.push_back({word, begin, begin + 0.3, 1});
      begin += 0.3;
    }
  }
  return words;
}

TranscriptionResult draft(const QString& text, double begin = 1) {
  return {text, false, heard(text, begin)};
}

TranscriptionResult finalResult(const QString& text, double begin = 1) {
  return {text, true, heard(text, begin)};
}

TranscriptionResult cut(const QString& text, double begin = 1) {
  return {text, true, heard(text, begin), true};
}

}  // namespace

class SentenceWriterTest final : public test::Suite {
  Q_OBJECT

  Script script_;
  std::unique_ptr<SentenceWriter> writer_;

  /// The texts of the results: finals as they are, drafts with "~" before them.
  QStringList written(const TranscriptionResult& result) {
    QStringList texts;
    for (const TranscriptionResult& each : writer_->write(result)) {
      texts.append(each.isFinal ? each.text : u'~' + each.text);
    }
    return texts;
  }

 private Q_SLOTS:
  void init() {
    script_ = {};
    writer_ = std::make_unique<SentenceWriter>(std::make_unique<ScriptedPunctuation>(script_));
  }

  void modelIsToldThePauses() {
    written(finalResult("yes | well + no"));
    QCOMPARE(script_.texts, QStringList("yes | well + no +"));
  }

  void draftEndsWithoutPause() {
    written(draft("yes + no"));
    QCOMPARE(script_.texts, QStringList("yes + no"));
  }

  void pausesDisappearFromTheText() {
    script_.replies["so | we met + today +"] = "So, |, we met. +. Today. +?";
    QCOMPARE(written(finalResult("so | we met + today")), QStringList("So, we met. Today."));
  }

  void marksAtTheEndOfADraftWait() {
    script_.replies["we met today it was fun"] = "We met today. It was. Fun.";
    // "today" is followed by three words, "was" by one.
    QCOMPARE(written(draft("we met today it was fun")), QStringList("~We met today. It was Fun"));
  }

  void longPauseDecidesAMarkOfADraft() {
    script_.replies["we met + today"] = "We met. + Today.";
    QCOMPARE(written(draft("we met + today")), QStringList("~We met. Today"));
  }

  void sentenceBeginsWithACapital() {
    script_.replies["we met + try again +"] = "We met. + try again. +";
    QCOMPARE(written(finalResult("we met + try again")), QStringList("We met. Try again."));
  }

  void functionWordIsSmallInsideASentence() {
    script_.replies["ask for you the man in paris +"] = "ask for you The man In Paris. +";
    QCOMPARE(written(finalResult("ask for you the man in paris")),
             QStringList("Ask for you the man in Paris."));
  }

  void abbreviationKeepsItsCapitals() {
    script_.replies["give it to it +"] = "Give it to IT. +";
    QCOMPARE(written(finalResult("give it to it")), QStringList("Give it to IT."));
  }

  void sentenceGoesOnInTheNextPhrase() {
    script_.replies["we met +"] = "We met, +";
    script_.replies["we met + and ate +"] = "We met. + And ate. +";
    QCOMPARE(written(finalResult("we met")), QStringList("We met"));
    QCOMPARE(written(finalResult("and ate", 2.5)), QStringList("and ate."));
  }

  void commaAtTheEndOfALineIsDropped() {
    script_.replies["so it goes + we met +"] = "So it goes, + we met, +";
    QCOMPARE(written(finalResult("so it goes + we met")), QStringList("So it goes, we met"));
    script_.replies["so it goes + we met + we ate +"] = "So it goes, + we met, + we ate, +";
    QCOMPARE(written(cut("we ate", 4)), QStringList("~we ate"));
    QCOMPARE(writer_->finish()->text, QString("we ate"));
  }

  void commaStaysWhereSpeechGoesOn() {
    const QString words = QString("so it goes ").repeated(11).trimmed();
    script_.replies[words] = QString(words).replace(17, 4, "goes,");
    QCOMPARE(written(cut(words)).first(), QString("So it goes so it goes,"));
  }

  void shownMarksDecideAboutTheNextCapital() {
    script_.replies["we met +"] = "We met. +";
    script_.replies["we met + and ate +"] = "We met, + and ate. +";
    QCOMPARE(written(finalResult("we met")), QStringList("We met."));
    QCOMPARE(written(finalResult("and ate", 2.5)), QStringList("And ate."));
  }

  void longSilenceBeginsANewSentence() {
    script_.replies["we met +"] = "We met +";
    script_.replies["and ate +"] = "and ate. +";
    written(finalResult("we met"));
    QCOMPARE(written(finalResult("and ate", 60)), QStringList("And ate."));
    QCOMPARE(script_.texts.last(), QString("and ate +"));
  }

  void cutPhraseKeepsItsUnfinishedSentence() {
    script_.replies["we met today it was the"] = "We met today. It was the";
    script_.replies["we met today it was the best day +"] = "We met today. It was the best day. +";
    QCOMPARE(written(cut("we met today it was the")),
             QStringList({"We met today.", "~It was the"}));
    QCOMPARE(writer_->unfinishedUntil(), std::optional(2.8));
    QCOMPARE(written(draft("best", 2.8)), QStringList("~It was the best"));
    const auto results = writer_->write(finalResult("best day", 2.8));
    QCOMPARE(results.size(), 1U);
    QCOMPARE(results[0].text, QString("It was the best day."));
    QCOMPARE(results[0].words.size(), 5U);
    QCOMPARE(results[0].words.front().text, QString("it"));
    QVERIFY(!writer_->unfinishedUntil());
  }

  void cutPhraseWithoutAnEndStaysADraft() {
    QCOMPARE(written(cut("we met")), QStringList("~We met"));
    QCOMPARE(written({"", true}), QStringList("~We met"));
    const auto end = writer_->finish();
    QVERIFY(end && end->isFinal);
    QCOMPARE(end->text, QString("We met"));
    QVERIFY(!writer_->finish());
  }

  void endlessSentenceIsWrittenInParts() {
    const QString words = QString("so it goes ").repeated(11).trimmed();
    const QStringList texts = written(cut(words));
    QCOMPARE(texts.size(), 1);
    QVERIFY(!texts.first().startsWith(u'~'));
  }

  void discardedDraftStaysDiscarded() { QCOMPARE(written({"", true}), QStringList("")); }

  void numbersAreWrittenAfterTheMarks() {
    script_.replies["i paid twenty five dollars +"] = "I paid twenty five dollars. +";
    QCOMPARE(written(draft("i paid twenty")), QStringList("~I paid twenty"));
    QCOMPARE(written(finalResult("i paid twenty five dollars")), QStringList("I paid $25."));
    written(finalResult("i did", 4));
    QCOMPARE(script_.texts.last(), QString("i paid twenty five dollars + i did +"));
  }

  void titlesHaveTheirFullStop() {
    script_.replies["ask mr hale or dr may +"] = "Ask MR. Hale or Dr. May. +";
    QCOMPARE(written(finalResult("ask mr hale or dr may")),
             QStringList("Ask Mr. Hale or Dr. May."));
    script_.replies["it took five ms +"] = "It took five ms. +";
    QCOMPARE(written(finalResult("it took five ms", 60)), QStringList("It took five ms."));
  }

  void numbersStayWordsIfTheStyleSaysSo() {
    const auto style = std::make_shared<CaptionStyle>();
    style->numbersAsDigits = false;
    writer_ =
        std::make_unique<SentenceWriter>(std::make_unique<ScriptedPunctuation>(script_), style);
    script_.replies["we met at ten thirty p m +"] = "We met at ten thirty p m. +";
    QCOMPARE(written(finalResult("we met at ten thirty p m")),
             QStringList("We met at ten thirty PM."));
    style->numbersAsDigits = true;
    QCOMPARE(written(finalResult("we met at ten thirty p m", 20)),
             QStringList("We met at 10:30 p.m."));
  }

  void changedWordsAreNotBelieved() {
    script_.replies["we met +"] = "They met. +";
    QCOMPARE(written(finalResult("we met")), QStringList("We met"));
  }

  void failedModelLeavesWordsAlone() {
    script_.failure = "broken";
    QCOMPARE(writer_->failure(), std::optional<QString>("broken"));
    QCOMPARE(written(draft("then i met")), QStringList("~Then I met"));
    QCOMPARE(written(cut("then i met")), QStringList("Then I met"));
    writer_ = std::make_unique<SentenceWriter>(nullptr);
    QCOMPARE(written(finalResult("on monday we met")), QStringList("On Monday we met"));
  }

  void lineTellsWhereTheCutPhraseEnds() {
    writer_ = std::make_unique<SentenceWriter>(nullptr);
    TranscriptionResult phrase = cut("then i met");
    phrase.until = 1.95;
    const std::vector<TranscriptionResult> lines = writer_->write(phrase);
    QCOMPARE(lines.size(), 1U);
    QVERIFY(lines[0].isCut);
    QCOMPARE(lines[0].until, phrase.until);
  }

  void textWithoutWordsStaysAsItIs() {
    QCOMPARE(written({"Turn. Off", true}), QStringList("Turn. Off"));
  }
};

QTEST_GUILESS_MAIN(SentenceWriterTest)
#include "sentence_writer_test.moc"
