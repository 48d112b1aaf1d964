// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/session_saver.h"

#include "captions/sessions_folder.h"
#include "language/localization.h"
#include "model/session_file/session_file.h"
#include "platform/foundation/atomic_file.h"
#include "platform/foundation/latest_job.h"
#include "support/manual_clock.h"
#include "support/saved_sessions.h"
#include "support/suite.h"

#include <memory>
#include <QSemaphore>
#include <QSignalSpy>

using namespace velun;

namespace {

struct Fixture : test::SessionsFolder {
  explicit Fixture(bool isSaving = false) : saver(session, store, isSaving, clock) {
    const auto log = [this](void (SessionSaver::*signal)(), const char* name) {
      QObject::connect(&saver, signal, [this, name] { signalled.append(name); });
    };
    log(&SessionSaver::isSavingChanged, "isSaving");
    log(&SessionSaver::urlChanged, "url");
    log(&SessionSaver::errorChanged, "error");
  }

  void addLine(const QString& text) {
    Line line;
    line.text = text;
    session.lines.push_back(line);
  }

  bool isWritten() const {
    return saver.url() && test::contentsOf(*saver.url()) == encodeSession(session);
  }

  QStringList takeSignals() { return std::exchange(signalled, {}); }

  test::ManualClock clock;
  CaptionSession session;
  SessionSaver saver;
  QStringList signalled;
};

/// Keeps the thread pool from beginning any work until `free`.
class BusyPool {
 public:
  BusyPool() {
    pool_->waitForDone();
    pool_->setMaxThreadCount(1);
    pool_->start([this] { end_.acquire(); });
  }
  ~BusyPool() {
    free();
    pool_->setMaxThreadCount(threads_);
  }
  Q_DISABLE_COPY_MOVE(BusyPool)

  /// Lets the work begin, and waits until it has ended.
  void free() {
    end_.release();
    pool_->waitForDone();
  }

 private:
  QThreadPool* pool_ = &LatestJob::pool();
  int threads_ = pool_->maxThreadCount();
  QSemaphore end_;
};

}  // namespace

class SessionSaverTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void writesNothingOutsideSavingMode() {
    Fixture fixture;
    fixture.addLine("One.");
    QVERIFY(fixture.saver.saveIfNeeded());
    QCOMPARE(fixture.files(), QStringList());
    QVERIFY(fixture.saver.hasUnsavedLines());
  }

  void savingEntersSavingModeAndWritesTheFile() {
    Fixture fixture;
    fixture.addLine("One.");
    QVERIFY(fixture.saver.save());
    QVERIFY(fixture.isWritten());
    QVERIFY(!fixture.saver.hasUnsavedLines());
    QCOMPARE(fixture.takeSignals(), QStringList({"isSaving", "url"}));
    fixture.addLine("Two.");
    QVERIFY(fixture.saver.saveIfNeeded());
    QVERIFY(fixture.isWritten());
    QCOMPARE(fixture.files().size(), 1);
    QCOMPARE(fixture.takeSignals(), QStringList());
  }

  void whoeverWaitsForTheDiskIsAnsweredWhenTheSaverGoes() {
    auto fixture = std::make_unique<Fixture>();
    fixture->addLine("One.");
    QVERIFY(fixture->saver.save());
    QVERIFY(fixture->saver.isSyncing());
    const OneShot<bool> synced = fixture->saver.synced();
    QVERIFY(!synced.isAnswered());
    fixture.reset();
    QVERIFY(synced.isAnswered());
  }

  void rewritesChangedLines() {
    Fixture fixture(true);
    fixture.addLine("One.");
    fixture.addLine("Two.");
    QVERIFY(fixture.saver.saveIfNeeded());
    fixture.session.lines[0].translations["ko"] = "하나.";
    fixture.saver.lineChanged(0);
    QVERIFY(fixture.saver.saveIfNeeded());
    QVERIFY(fixture.isWritten());
  }

  void anEmptySessionIsNeverWritten() {
    Fixture fixture;
    QVERIFY(!fixture.saver.save());
    QVERIFY(fixture.saver.saveIfNeeded());
    QVERIFY(!fixture.saver.isSaving());
    QVERIFY(!fixture.saver.hasUnsavedLines());
    QCOMPARE(fixture.takeSignals(), QStringList());
    Fixture saving(true);
    QVERIFY(saving.saver.saveIfNeeded());
    QCOMPARE(saving.files(), QStringList());
  }

  void aDeletedFileIsNotWrittenAgain() {
    Fixture fixture(true);
    fixture.addLine("One.");
    fixture.saver.saveIfNeeded();
    const QUrl url = *fixture.saver.url();
    QVERIFY(QFile::remove(url.toLocalFile()));
    fixture.takeSignals();
    fixture.saver.fileWasDeleted(url);
    QCOMPARE(fixture.takeSignals(), QStringList({"url", "isSaving"}));
    fixture.addLine("Two.");
    QVERIFY(fixture.saver.saveIfNeeded());
    QCOMPARE(fixture.files(), QStringList());
    QVERIFY(fixture.saver.hasUnsavedLines());
    QVERIFY(fixture.saver.save());
    QVERIFY(fixture.isWritten());
  }

  void aFileThatIsBackIsWrittenOn() {
    Fixture fixture(true);
    fixture.addLine("One.");
    fixture.saver.saveIfNeeded();
    const QUrl url = *fixture.saver.url();
    const QByteArray before = test::contentsOf(url);
    QVERIFY(QFile::remove(url.toLocalFile()));
    fixture.saver.fileWasDeleted(url);
    fixture.addLine("Two.");
    fixture.saver.fileIsBack(QUrl::fromLocalFile("/elsewhere.json"));
    QVERIFY(!fixture.saver.isSaving());
    writeFileAtomically(url.toLocalFile(), before, true);
    fixture.saver.fileIsBack(url);
    QVERIFY(fixture.saver.isSaving());
    QCOMPARE(fixture.saver.url(), std::optional(url));
    QVERIFY(fixture.isWritten());
    QVERIFY(!fixture.saver.hasUnsavedLines());
  }

  void theFileOfAnEarlierSessionIsLeftAlone() {
    Fixture fixture(true);
    fixture.addLine("One.");
    fixture.saver.saveIfNeeded();
    const QUrl url = *fixture.saver.url();
    QVERIFY(QFile::remove(url.toLocalFile()));
    fixture.saver.fileWasDeleted(url);
    fixture.saver.reset(false);
    fixture.saver.fileIsBack(url);
    QVERIFY(!fixture.saver.isSaving());
    QCOMPARE(fixture.files(), QStringList());
  }

  void aFileDeletedThroughALinkIsRecognized() {
    Fixture fixture(true);
    fixture.addLine("One.");
    fixture.saver.saveIfNeeded();
    const QString link = fixture.folder.filePath("link");
    QVERIFY(QFile::link(fixture.store.directory.toLocalFile(), link));
    const QString name = fixture.saver.url()->fileName();
    fixture.saver.fileWasDeleted(QUrl::fromLocalFile(link + '/' + name));
    QVERIFY(!fixture.saver.url());
  }

  void aDeletedFileLeavesNoCopy() {
    Fixture fixture(true);
    fixture.addLine("One.");
    fixture.saver.saveIfNeeded();
    VERIFY_SOON(!fixture.saver.isSyncing());
    QCOMPARE(fixture.hiddenFiles().size(), 1);
    const QUrl url = *fixture.saver.url();
    QVERIFY(QFile::remove(url.toLocalFile()));
    fixture.saver.fileWasDeleted(url);
    VERIFY_SOON(!fixture.saver.isSyncing());
    QCOMPARE(fixture.hiddenFiles(), QStringList());
  }

  void aDeletedFileIsSavedAgainBeforeItsFirstSync() {
    BusyPool pool;
    Fixture fixture(true);
    fixture.addLine("One.");
    QVERIFY(fixture.saver.saveIfNeeded());
    const QUrl url = *fixture.saver.url();
    QVERIFY(QFile::remove(url.toLocalFile()));
    fixture.saver.fileWasDeleted(url);
    QVERIFY(fixture.saver.save());
    QCOMPARE(fixture.hiddenFiles().size(), 1);
    // Nothing waits for a lock that this program itself holds.
    pool.free();
    VERIFY_SOON(!fixture.saver.isSyncing());
    fixture.saver.reset(true);
    VERIFY_SOON(!fixture.saver.isSyncing());
    QCOMPARE(fixture.hiddenFiles(), QStringList());
    QCOMPARE(test::contentsOf(url), encodeSession(fixture.session));
  }

  void anEndRightAfterADeletedFileWasSavedAgain() {
    BusyPool pool;
    const test::SessionsFolder folder;
    CaptionSession session;
    session.lines.push_back({});
    {
      const test::ManualClock clock;
      SessionSaver saver(session, folder.store, true, clock);
      QVERIFY(saver.save());
      const QUrl url = *saver.url();
      QVERIFY(QFile::remove(url.toLocalFile()));
      saver.fileWasDeleted(url);
      QVERIFY(saver.save());
    }
    pool.free();
    QCOMPARE(folder.files().size(), 1);
    QCOMPARE(folder.hiddenFiles(), QStringList());
  }

  void whatKilledProgramsLeftIsPutRightInTheBackground() {
    Fixture fixture(true);
    const QString folder = fixture.store.directory.toLocalFile();
    QVERIFY(QDir().mkpath(folder));
    const QString name = folder + "/talk.json";
    QVERIFY(QFile(name).open(QIODevice::WriteOnly));
    QFile left(folder + "/.talk.json.velun-synced");
    QVERIFY(left.open(QIODevice::WriteOnly));
    left.write(encodeSession(fixture.session));
    left.close();

    BusyPool pool;
    fixture.addLine("One.");
    QVERIFY(fixture.saver.saveIfNeeded());
    QCOMPARE(test::contentsOf(QUrl::fromLocalFile(name)), QByteArray());
    pool.free();
    VERIFY_SOON(!fixture.saver.isSyncing());
    QVERIFY(!left.exists());
    QVERIFY(!test::contentsOf(QUrl::fromLocalFile(name)).isEmpty());
  }

  void anEndLeavesNoCopy() {
    const test::SessionsFolder folder;
    CaptionSession session;
    {
      const test::ManualClock clock;
      SessionSaver saver(session, folder.store, true, clock);
      session.lines.push_back({});
      for (int i = 0; i < 5; ++i) saver.saveIfNeeded();
    }
    QCOMPARE(folder.hiddenFiles(), QStringList());
    QCOMPARE(test::contentsOf(test::savedSessions(folder.store).at(0).url), encodeSession(session));
  }

  void otherDeletedFilesAreIgnored() {
    const QUrl other = QUrl::fromLocalFile("/elsewhere.json");
    Fixture fixture(true);
    fixture.saver.fileWasDeleted(other);
    QVERIFY(fixture.saver.isSaving());
    fixture.addLine("One.");
    fixture.saver.saveIfNeeded();
    fixture.saver.fileWasDeleted(other);
    QVERIFY(fixture.saver.isSaving());
    QVERIFY(fixture.isWritten());
  }

  void aFailedWriteIsReportedAndRetried() {
    Fixture fixture(true);
    fixture.breakStore();
    fixture.addLine("One.");
    QVERIFY(!fixture.saver.saveIfNeeded());
    QVERIFY(fixture.saver.error()->startsWith("Couldn’t save the session: "));
    QVERIFY(fixture.saver.error()->size() > 30);
    QVERIFY(!fixture.saver.url());
    QVERIFY(fixture.saver.hasUnsavedLines());
    QCOMPARE(fixture.takeSignals(), QStringList({"error"}));
    fixture.repairStore();
    QVERIFY(fixture.saver.saveIfNeeded());
    QVERIFY(fixture.isWritten());
    QVERIFY(!fixture.saver.hasUnsavedLines());
    QCOMPARE(fixture.takeSignals(), QStringList({"url", "error"}));
  }

  void aFailedWriteKeepsTheUrlOfTheLastGoodFile() {
    Fixture fixture(true);
    fixture.addLine("One.");
    fixture.saver.saveIfNeeded();
    const std::optional<QUrl> url = fixture.saver.url();
    fixture.breakStore();
    fixture.addLine("Two.");
    QVERIFY(!fixture.saver.saveIfNeeded());
    QCOMPARE(fixture.saver.url(), url);
    QVERIFY(fixture.saver.hasUnsavedLines());
  }

  void aSyncDoesNotHideAFailedWrite() {
    BusyPool pool;
    Fixture fixture(true);
    fixture.addLine("One.");
    QVERIFY(fixture.saver.saveIfNeeded());
    // Needs another sync after the one that has not begun yet.
    QVERIFY(fixture.saver.saveIfNeeded(SessionSaver::Sync::now));
    fixture.breakStore();
    fixture.addLine("Two.");
    QVERIFY(!fixture.saver.saveIfNeeded());
    const std::optional<QString> failure = fixture.saver.error();
    pool.free();
    // The first sync meets the broken folder, the second one succeeds.
    fixture.repairStore();
    VERIFY_SOON(!fixture.saver.isSyncing());
    QCOMPARE(fixture.saver.error(), failure);
    QVERIFY(fixture.saver.hasUnsavedLines());
    QVERIFY(fixture.saver.saveIfNeeded());
    QVERIFY(fixture.isWritten());
    VERIFY_SOON(!fixture.saver.isSyncing());
    QCOMPARE(fixture.saver.error(), std::nullopt);
  }

  void failuresAreReportedInKorean() {
    Fixture fixture;
    Localization::shared().setLanguage(AppLanguage::korean);
    fixture.addLine("하나.");
    fixture.breakStore();
    QVERIFY(!fixture.saver.save());
    QVERIFY(fixture.saver.error()->startsWith("기록 저장 실패: "));
  }

  void anotherSessionHasItsOwnFile() {
    Fixture fixture(true);
    fixture.addLine("One.");
    fixture.saver.saveIfNeeded();
    fixture.session = CaptionSession();
    fixture.takeSignals();
    fixture.saver.reset(false);
    QCOMPARE(fixture.takeSignals(), QStringList({"url", "isSaving"}));
    fixture.addLine("Two.");
    QVERIFY(fixture.saver.save());
    QVERIFY(fixture.isWritten());
    QCOMPARE(fixture.files().size(), 2);
  }
};

QTEST_GUILESS_MAIN(SessionSaverTest)
#include "session_saver_test.moc"
