// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/caption_file.h"

#include "captions/model_fixture.h"
#include "platform/foundation/latest_job.h"
#include "support/suite.h"
#include "support/test_folder.h"

#include <QSignalSpy>

using namespace velun;

namespace {

/// Captions that are written to "captions.txt".
struct FileFixture : test::ModelFixture {
  explicit FileFixture(const std::function<void(AppSettings&)>& prepare = {})
      : ModelFixture(prepare) {
    sharing.setCaptionFile(folder.path("captions.txt"));
    file = std::make_unique<CaptionFile>(*model, sharing);
  }

  ~FileFixture() {
    file.reset();
    LatestJob::pool().waitForDone();
  }

  /// The file after everything that was ordered.
  QByteArray written() {
    do {
      LatestJob::pool().waitForDone();
      test::settle();
    } while (LatestJob::pool().activeThreadCount() > 0);
    return folder.contents("captions.txt");
  }

  test::TestFolder folder;
  SharingSettings sharing;
  std::unique_ptr<CaptionFile> file;
};

}  // namespace

class CaptionFileTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void theLastLinesAreWrittenAsTheySettle() {
    FileFixture f;
    QCOMPARE(f.written(), "unreadable");
    f.start();
    QCOMPARE(f.written(), "");
    f.draft("one");
    f.final("One.");
    QCOMPARE(f.written(), "One.\n");
    f.final("Two. Three.");
    QCOMPARE(f.written(), "Two.\nThree.\n");
    f.sharing.setCaptionFileLines(3);
    QCOMPARE(f.written(), "One.\nTwo.\nThree.\n");
    QCOMPARE(f.folder.names(), QStringList({"captions.txt"}));
  }

  void theFileHasTheTextsOfThePanel() {
    FileFixture f([](AppSettings& settings) {
      settings.setTranslate(true);
      settings.setShowTranslationOnly(true);
    });
    f.translateToUpperCase();
    f.start();
    f.final("One.");
    test::settle();
    QCOMPARE(f.written(), "ONE.\n");
    f.settings.setShowTranslationOnly(false);
    QCOMPARE(f.written(), "One.\nONE.\n");
  }

  void linesOfAnEarlierRunAreNotWritten() {
    FileFixture f;
    f.start();
    f.final("One.");
    f.stop();
    QCOMPARE(f.written(), "");
    f.start();
    QCOMPARE(f.written(), "");
    f.final("Two.");
    QCOMPARE(f.written(), "Two.\n");
  }

  void aStopLeavesWhatTheUserWants_data() {
    QTest::addColumn<CaptionFileEnd>("end");
    QTest::addColumn<QByteArray>("left");
    QTest::newRow("keep") << CaptionFileEnd::keep << QByteArray("One.\n");
    QTest::newRow("empty") << CaptionFileEnd::empty << QByteArray();
    QTest::newRow("remove") << CaptionFileEnd::remove << QByteArray("unreadable");
  }
  void aStopLeavesWhatTheUserWants() {
    QFETCH(CaptionFileEnd, end);
    QFETCH(QByteArray, left);
    FileFixture f;
    f.sharing.setCaptionFileEnd(end);
    f.start();
    f.final("One.");
    QCOMPARE(f.written(), "One.\n");
    f.stop();
    QCOMPARE(f.written(), left);
  }

  void theEndOfTheProgramIsAStop() {
    FileFixture f;
    f.start();
    f.final("One.");
    f.file.reset();
    QCOMPARE(f.written(), "");
  }

  void anotherFileTakesOver() {
    FileFixture f;
    f.start();
    f.final("One.");
    f.sharing.setCaptionFile(f.folder.path("other.txt"));
    f.final("Two.");
    QCOMPARE(f.written(), "");
    QCOMPARE(f.folder.contents("other.txt"), "Two.\n");
  }

  void anErrorIsSaidOnceAndWithdrawn() {
    FileFixture f;
    f.sharing.setCaptionFile(f.folder.path("missing/captions.txt"));
    const QSignalSpy changes(f.file.get(), &CaptionFile::errorChanged);
    f.start();
    f.final("One.");
    f.written();
    f.final("Two.");
    f.written();
    QCOMPARE(changes.size(), 1);
    QVERIFY(f.file->error()->contains("“captions.txt” couldn’t be written"));
    QVERIFY(QDir(f.folder.path()).mkdir("missing"));
    f.final("Three.");
    f.written();
    QCOMPARE(f.folder.contents("missing/captions.txt"), "Two.\nThree.\n");
    QCOMPARE(changes.size(), 2);
    QVERIFY(!f.file->error());
  }

  void nothingIsWrittenWithoutAFile() {
    FileFixture f;
    f.sharing.setCaptionFile({});
    f.start();
    f.final("One.");
    f.stop();
    f.written();
    QCOMPARE(f.folder.names(), QStringList());
  }
};

QTEST_GUILESS_MAIN(CaptionFileTest)
#include "caption_file_test.moc"
