// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/speaker.h"

#include "language/localization.h"
#include "support/suite.h"

using namespace velun;

namespace {

Line saidBy(const std::optional<QString>& speaker) {
  Line line;
  line.text = "Words.";
  line.speaker = speaker;
  return line;
}

}  // namespace

class SpeakerTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void aNumberIsShownAsAnEstimate() {
    QCOMPARE(speakerLabel(numberedSpeaker(2)), "Speaker 2?");
    QCOMPARE(speakerName("2"), "Speaker 2");
    QCOMPARE(speakerLabel("Anna"), "Anna");
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(speakerLabel("2"), "화자 2?");
    Localization::shared().setLanguage(AppLanguage::english);
  }

  void theUserNamesSpeakers_data() {
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("speaker");
    QTest::newRow("a name") << "  Anna  Bell "
                            << "Anna Bell";
    QTest::newRow("nothing") << "  "
                             << "";
    QTest::newRow("another speaker") << "Speaker 2"
                                     << "2";
    QTest::newRow("as it is shown") << "Speaker 12?"
                                    << "12";
    QTest::newRow("a name with a number") << "Agent 007"
                                          << "Agent 007";
  }
  void theUserNamesSpeakers() {
    QFETCH(QString, text);
    QFETCH(QString, speaker);
    QCOMPARE(speakerNamed(text), speaker);
  }

  void renamingChangesEveryLineOfTheSpeaker() {
    std::vector<Line> lines = {saidBy("1"), saidBy("2"), saidBy({}), saidBy("1")};
    QVERIFY(renameSpeaker(lines, "1", "Anna") == (std::vector<std::size_t>{0, 3}));
    QCOMPARE(speakersOf(lines), QStringList({"Anna", "2"}));
    QVERIFY(!lines[2].speaker);
    QVERIFY(renameSpeaker(lines, "2", "").empty());
    QVERIFY(renameSpeaker(lines, "2", "2").empty());
    QVERIFY(renameSpeaker(lines, "2", "Anna") == (std::vector<std::size_t>{1}));
    QCOMPARE(speakersOf(lines), QStringList({"Anna"}));
  }

  void numbersAreMovedBeyondOthers() {
    std::vector<Line> lines = {saidBy("1"), saidBy("Anna"), saidBy("3"), saidBy({})};
    QCOMPARE(highestSpeaker(lines), 3);
    QCOMPARE(addToNumbers(lines, 2), 5);
    QCOMPARE(speakersOf(lines), QStringList({"3", "Anna", "5"}));
    QCOMPARE(highestSpeaker({saidBy("Anna")}), 0);
  }

  void aNumberFromElsewhereIsNotTooLarge() {
    std::vector<Line> lines = {saidBy("2147483647"), saidBy("999999")};
    QCOMPARE(highestSpeaker(lines), 999999);
    QCOMPARE(addToNumbers(lines, 1), 1);
    QCOMPARE(speakersOf(lines), QStringList({"2147483647", "1000000"}));
    QCOMPARE(speakerName("2147483647"), QString("2147483647"));
  }

  /// Looked for one by one, they would take minutes.
  void manySpeakersOfAFileFromElsewhereAreListedInOrder() {
    constexpr int kCount = 200'000;
    std::vector<Line> lines;
    for (int i = 0; i < kCount; ++i) lines.push_back(saidBy(QString::number(i)));
    const QStringList all = speakersOf(lines);
    QCOMPARE(all.size(), kCount);
    QCOMPARE(all.last(), QString::number(kCount - 1));
  }
};

QTEST_GUILESS_MAIN(SpeakerTest)
#include "speaker_test.moc"
