// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/clip_styles.h"
#include "recognition/process_family.h"
#include "recognition/word_errors.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>
#include <vector>

using namespace velun::bench;

class RecognitionScoreTest : public QObject {
  Q_OBJECT

 private Q_SLOTS:
  void countsSubstitutionsInsertionsAndDeletions();
  void intervalOfEqualClipsIsTheirErrorRate();
  void intervalOfDifferentClipsContainsTheirErrorRate();
  void moreClipsMakeTheIntervalNarrower();
  void readsTheListsOfStyles();
  void memoryIncludesChildProcesses();
};

void RecognitionScoreTest::countsSubstitutionsInsertionsAndDeletions() {
  const WordErrors errors =
      countWordErrors("Mr. Hale saw the red house", "mister hale so the house now");
  QCOMPARE(errors.words, 6);
  QCOMPARE(errors.errors, 3);
}

void RecognitionScoreTest::intervalOfEqualClipsIsTheirErrorRate() {
  const std::vector<WordErrors> clips(20, WordErrors{1, 4});
  const Interval interval = confidenceInterval(clips);
  QCOMPARE(interval.low, 25.0);
  QCOMPARE(interval.high, 25.0);
}

void RecognitionScoreTest::intervalOfDifferentClipsContainsTheirErrorRate() {
  std::vector<WordErrors> clips(10, WordErrors{0, 10});
  clips.insert(clips.end(), 10, WordErrors{5, 10});
  const Interval interval = confidenceInterval(clips);
  QVERIFY(interval.low > 5 && interval.low < 25);
  QVERIFY(interval.high > 25 && interval.high < 45);
}

void RecognitionScoreTest::moreClipsMakeTheIntervalNarrower() {
  const auto width = [](std::size_t count) {
    std::vector<WordErrors> clips(count, WordErrors{0, 10});
    clips.insert(clips.end(), count, WordErrors{5, 10});
    const Interval interval = confidenceInterval(clips);
    return interval.high - interval.low;
  };
  QVERIFY(width(200) < width(10) / 3);
}

void RecognitionScoreTest::readsTheListsOfStyles() {
  const QTemporaryDir folder;
  for (const auto& [name, text] :
       {std::pair("style-talk.list", "one\ntwo\n"), std::pair("style-read.list", "three\n"),
        std::pair("other.list", "four\n")}) {
    QFile file(folder.filePath(name));
    QVERIFY(file.open(QFile::WriteOnly));
    file.write(text);
  }
  const std::vector<ClipStyle> styles = readStyles(folder.path());
  QCOMPARE(styles.size(), std::size_t(2));
  QCOMPARE(styles[0].name, QString("read"));
  QCOMPARE(styles[0].clips, QStringList({"three"}));
  QCOMPARE(styles[1].name, QString("talk"));
  QCOMPARE(styles[1].clips, QStringList({"one", "two"}));
}

void RecognitionScoreTest::memoryIncludesChildProcesses() {
  const double alone = residentMegabytes();
  QProcess child;
  child.start("python3",
              {"-c", "data = bytearray(50_000_000); print('ready', flush=True); input()"});
  QVERIFY(child.waitForReadyRead());
  QVERIFY(residentMegabytes() > alone + 45);
  child.closeWriteChannel();
  QVERIFY(child.waitForFinished());
}

QTEST_GUILESS_MAIN(RecognitionScoreTest)

#include "recognition_score_test.moc"
