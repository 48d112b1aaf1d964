// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/current_session.h"

#include "support/suite.h"

using namespace velun;
using namespace std::chrono_literals;

namespace {

constexpr Instant kStart{1'700'000'000s};

Line spoken(const QString& text, const QString& locale = "en_US") {
  Line line;
  line.text = text;
  line.sourceLanguage = locale;
  return line;
}

void append(CurrentSession& current, const Line& line) {
  current.insertBySpeech(line, current.lines().size());
}

}  // namespace

class CurrentSessionTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void findsLinesByID() {
    CurrentSession current(kStart);
    append(current, spoken("One."));
    append(current, spoken("Two."));
    const QUuid second = current.lines()[1].id;
    QCOMPARE(current.setTranslation(second, "ko", "둘."), std::optional<std::size_t>(1));
    QVERIFY(!current.setTranslation(QUuid::createUuid(), "ko", "셋."));
    current.reset(kStart);
    QVERIFY(!current.setTranslation(second, "ko", "둘."));
  }

  void resetStartsAnEmptySession() {
    CurrentSession current(kStart);
    const QUuid before = current.session().id;
    append(current, spoken("One."));
    current.setTimes(kStart, kStart + 5s);
    current.reset(kStart + 1min);
    QVERIFY(current.session().id != before);
    QVERIFY(current.lines().empty());
    QCOMPARE(current.session().startedAt, kStart + 1min);
    QVERIFY(!current.session().endedAt);
  }

  void onlyDifferentTimesAreAChange() {
    CurrentSession current(kStart);
    QVERIFY(!current.setTimes(kStart, std::nullopt));
    QVERIFY(current.setTimes(kStart + 1s, std::nullopt));
    QVERIFY(current.setTimes(kStart + 1s, kStart + 5s));
    QVERIFY(!current.setTimes(kStart + 1s, kStart + 5s));
    QVERIFY(current.setTimes(kStart + 2s, std::nullopt));
    QCOMPARE(current.session().startedAt, kStart + 2s);
    QVERIFY(!current.session().endedAt);
  }

  void aTranslationBelongsToItsLineAlone() {
    CurrentSession current(kStart);
    for (const char* text : {"One.", "Two.", "Three."}) append(current, spoken(text));
    const QUuid second = current.lines()[1].id;
    QCOMPARE(current.setTranslation(second, "ko", "둘."), std::optional<std::size_t>(1));
    current.setTranslation(second, "ko", "두울.");
    current.setTranslation(second, "ja", "二。");
    QCOMPARE(current.lines()[1].translations, Translations({{"ja", "二。"}, {"ko", "두울."}}));
    QVERIFY(current.lines()[0].translations.empty());
    QVERIFY(current.lines()[2].translations.empty());
    QVERIFY(!current.setTranslation(QUuid::createUuid(), "ko", "넷."));
  }

  void knowsWhichLinesLackATranslation() {
    CurrentSession current(kStart);
    append(current, spoken("One."));
    append(current, spoken("Zwei.", "de_DE"));
    const QUuid first = current.lines()[0].id;
    const auto pending = [&current](const char* source, const char* target) {
      return current.pendingTranslationIDs(source, target);
    };
    QCOMPARE(pending("en_US", "ko"), QSet<QUuid>({first}));
    append(current, spoken("Three."));
    current.setTranslation(first, "ko", "하나.");
    const QUuid third = current.lines()[2].id;
    QCOMPARE(pending("en_US", "ko"), QSet<QUuid>({third}));
    QCOMPARE(pending("en_US", "ja"), QSet<QUuid>({first, third}));
    QCOMPARE(pending("de_DE", "ja"), QSet<QUuid>({current.lines()[1].id}));
    current.reset(kStart);
    QVERIFY(pending("en_US", "ko").isEmpty());
  }

  void linesWithAnEarlierTranslationAreNotPending() {
    CurrentSession current(kStart);
    Line line = spoken("One.");
    line.legacyTranslation = "하나.";
    append(current, line);
    QVERIFY(current.pendingTranslationIDs("en_US", "ko").isEmpty());
  }

  void theTranscriptIsTheSessionsOwn() {
    CurrentSession current(kStart);
    const auto agrees = [&current] {
      for (const auto content :
           {TranscriptContent::original, TranscriptContent::translation, TranscriptContent::both}) {
        if (current.transcript(content, "ko") != current.session().transcript(content, "ko")) {
          return false;
        }
      }
      return true;
    };
    QVERIFY(agrees());
    for (const std::size_t index : {0, 1, 2, 0, 3, 2}) {
      append(current, spoken("A line."));
      current.setTranslation(current.lines()[index % current.lines().size()].id, "ko", "줄");
      QVERIFY(agrees());
    }
    current.reset(kStart);
    QVERIFY(agrees());
  }
};

QTEST_GUILESS_MAIN(CurrentSessionTest)
#include "current_session_test.moc"
