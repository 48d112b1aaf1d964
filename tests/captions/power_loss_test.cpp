// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/session_saver.h"
#include "model/session_file/session_file.h"
#include "model/session_file/session_problem.h"
#include "support/careless_disk.h"
#include "support/manual_clock.h"
#include "support/saved_sessions.h"
#include "support/suite.h"
#include "support/test_folder.h"

#include <QDir>
#include <random>

using namespace velun;
using test::CarelessDisk;

namespace {

/// The lines of the session files that can be read, and how many cannot.
struct Found {
  std::vector<std::size_t> lineCounts;
  int unreadableCount = 0;
};

/// Starts the program on what a power loss has left.
Found recovered(const CarelessDisk::Folder& folder) {
  const test::TestFolder sessions;
  for (const auto& [name, contents] : folder) {
    sessions.write(QFile::decodeName(name), contents);
  }
  const SessionStore store{QUrl::fromLocalFile(sessions.path())};
  const SessionListing listing = test::listingOf(store);
  Found found;
  found.unreadableCount = listing.unreadableCount;
  for (const auto& entry : listing.sessions) found.lineCounts.push_back(entry->summary.lineCount);
  return found;
}

/// A session that is saved line by line in a recorded folder.
class Recorded {
 public:
  explicit Recorded(unsigned seed)
      : random_(seed), recording_(folder_.path()), saver_(session_, store(), true, clock_) {}

  SessionSaver& saver() { return saver_; }
  test::ManualClock& clock() { return clock_; }
  std::vector<test::FileOperation> operations() const { return recording_.operations(); }

  void addLine(SessionSaver::Sync sync = SessionSaver::Sync::whenDue) {
    Line line;
    line.text = QStringLiteral("This is line %1.").arg(session_.lines.size());
    session_.lines.push_back(line);
    saver_.saveIfNeeded(sync);
  }

  /// Adds lines over half a minute, some of them while the file is being synced.
  void talk(int lines) {
    std::uniform_int_distribution<int> seconds(0, 12);
    std::uniform_int_distribution<int> chance(0, 3);
    for (int i = 0; i < lines; ++i) {
      addLine();
      clock_.advance(std::chrono::seconds(seconds(random_)));
      if (chance(random_) == 0) waitForSync();
    }
  }

  void waitForSync() {
    QVERIFY(QTest::qWaitFor([this] { return !saver_.isSyncing(); }, 60'000));
  }

 private:
  SessionStore store() const { return {QUrl::fromLocalFile(folder_.path())}; }

  std::mt19937 random_;
  test::TestFolder folder_;
  test::RecordedFiles recording_;
  test::ManualClock clock_;
  CaptionSession session_;
  SessionSaver saver_;
};

std::size_t countOf(const std::vector<test::FileOperation>& operations,
                    test::FileOperation::Kind kind) {
  return std::size_t(
      std::count_if(operations.begin(), operations.end(),
                    [kind](const test::FileOperation& each) { return each.kind == kind; }));
}

/// How many lines a synced copy in the folder has.
std::size_t syncedLines(const CarelessDisk::Folder& folder) {
  for (const auto& [name, contents] : folder) {
    if (!name.endsWith(".velun-synced")) continue;
    try {
      return decodeSession(contents).lines.size();
    } catch (const SessionProblem&) {
      return 0;
    }
  }
  return 0;
}

}  // namespace

class PowerLossTest final : public test::Suite {
  Q_OBJECT

  /// Loses power after every operation, in every way.
  static void checkEveryMoment(const std::vector<test::FileOperation>& operations) {
    CarelessDisk disk;
    std::size_t promised = 0;
    std::set<CarelessDisk::Folder> checked;
    for (const test::FileOperation& operation : operations) {
      disk.perform(operation);
      if (operation.kind == test::FileOperation::syncFolder) {
        promised = std::max(promised, syncedLines(disk.folder()));
      }
      for (const CarelessDisk::Folder& folder : disk.afterPowerLoss()) {
        if (!checked.insert(folder).second) continue;
        const Found found = recovered(folder);
        QCOMPARE(found.unreadableCount, 0);
        QVERIFY(found.lineCounts.size() <= 1);
        const std::size_t lines = found.lineCounts.empty() ? 0 : found.lineCounts[0];
        QVERIFY2(lines >= promised,
                 qPrintable(QStringLiteral("%1 of %2").arg(lines).arg(promised)));
      }
    }
    QVERIFY(promised > 0);
  }

 private Q_SLOTS:
  void theOldOrTheNewFileIsThereAfterAPowerLoss() {
    for (unsigned seed = 1; seed <= 3; ++seed) {
      std::vector<test::FileOperation> operations;
      {
        Recorded recorded(seed);
        recorded.talk(12);
        recorded.addLine(SessionSaver::Sync::now);
        recorded.waitForSync();
        operations = recorded.operations();
      }
      checkEveryMoment(operations);
      if (QTest::currentTestFailed()) return;
    }
  }

  void aReplacedSessionIsOnTheDisk() {
    Recorded recorded(7);
    recorded.talk(3);
    recorded.saver().reset(false);
    recorded.waitForSync();
    const std::vector<test::FileOperation> operations = recorded.operations();
    checkEveryMoment(operations);
    CarelessDisk disk;
    for (const test::FileOperation& operation : operations) disk.perform(operation);
    QCOMPARE(disk.folder().size(), std::size_t(1));
    for (const CarelessDisk::Folder& folder : disk.afterPowerLoss()) {
      QCOMPARE(recovered(folder).lineCounts, std::vector<std::size_t>{3});
    }
  }

  void theFirstWriteAfterTwentySecondsIsSynced() {
    Recorded recorded(8);
    const auto syncs = [&recorded] {
      recorded.waitForSync();
      return countOf(recorded.operations(), test::FileOperation::syncFile);
    };
    recorded.addLine();
    QCOMPARE(syncs(), std::size_t(1));
    recorded.clock().advance(std::chrono::milliseconds(19'999));
    recorded.addLine();
    QCOMPARE(syncs(), std::size_t(1));
    recorded.clock().advance(std::chrono::hours(1));
    QCOMPARE(syncs(), std::size_t(1));
    recorded.addLine();
    QCOMPARE(syncs(), std::size_t(2));
    recorded.addLine();
    QCOMPARE(syncs(), std::size_t(2));
    recorded.addLine(SessionSaver::Sync::now);
    QCOMPARE(syncs(), std::size_t(3));
  }

  void aFailedSyncIsReportedUntilOneSucceeds() {
    Recorded recorded(9);
    recorded.addLine();
    recorded.waitForSync();
    test::RecordedFiles::failNextSync(EIO);
    recorded.addLine(SessionSaver::Sync::now);
    recorded.waitForSync();
    SessionSaver& saver = recorded.saver();
    QVERIFY(saver.error().value_or(QString()).startsWith("Couldn’t save the session: "));
    QVERIFY(saver.hasUnsavedLines());
    // Less than 20 seconds later: the next write tries again.
    recorded.addLine();
    QVERIFY(saver.error());
    recorded.waitForSync();
    QVERIFY(!saver.error());
    QVERIFY(!saver.hasUnsavedLines());
  }

  void unsavedLinesAreInNoFile() {
    const test::TestFolder folder;
    const test::RecordedFiles recording(folder.path());
    const test::ManualClock clock;
    CaptionSession session;
    SessionSaver saver(session, {QUrl::fromLocalFile(folder.path())}, false, clock);
    session.lines.push_back({});
    saver.saveIfNeeded(SessionSaver::Sync::now);
    QVERIFY(recording.operations().empty());
    QVERIFY(!saver.isSyncing());
  }
};

QTEST_GUILESS_MAIN(PowerLossTest)
#include "power_loss_test.moc"
