// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/synced_copy.h"

#include "platform/foundation/file_error.h"
#include "support/failing_calls.h"
#include "support/suite.h"
#include "support/test_folder.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/syscall.h>
#include <utility>

using namespace velun;

namespace {

/// As over NFS: an exclusive lock needs a descriptor for writing.
bool locksNeedWriting = false;

/// A descriptor of a writer that still holds the lock of its file, and closes it when another one
/// has tried to get the lock three times.
int writer = -1;
int attempts = 0;

const QString kName = "talk.json";
const QString kCopy = ".talk.json.velun-synced";

/// Writes the file as another version, under another inode.
void replace(const test::TestFolder& folder, const QByteArray& bytes) {
  folder.write("new", bytes);
  std::rename(QFile::encodeName(folder.path("new")).constData(),
              QFile::encodeName(folder.path(kName)).constData());
}

}  // namespace

extern "C" int flock(int file, int operation) noexcept {
  const bool isReadOnly = (::fcntl(file, F_GETFL) & O_ACCMODE) == O_RDONLY;
  if (locksNeedWriting && isReadOnly && (operation & LOCK_EX)) {
    errno = EBADF;
    return -1;
  }
  if (writer >= 0 && ++attempts > 3) ::close(std::exchange(writer, -1));
  return int(::syscall(SYS_flock, file, operation));
}

class SyncedCopyTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { locksNeedWriting = false; }

  void theCopyIsLockedUntilTheEnd_data() {
    QTest::addColumn<bool>("isOverNetwork");
    QTest::newRow("local") << false;
    QTest::newRow("network") << true;
  }
  void theCopyIsLockedUntilTheEnd() {
    QFETCH(bool, isOverNetwork);
    locksNeedWriting = isOverNetwork;
    const test::TestFolder folder;
    {
      SyncedCopy copy;
      copy.protect(folder.path(kName));
      QVERIFY(findSyncedCopies(folder.path()).empty());
      replace(folder, "first");
      copy.update();
      QVERIFY(findSyncedCopies(folder.path()).empty());
      // The same version again, as when it is written while a sync is about to begin.
      copy.update();
      QVERIFY(findSyncedCopies(folder.path()).empty());
      replace(folder, "second");
      copy.update();
      QVERIFY(findSyncedCopies(folder.path()).empty());
      QCOMPARE(folder.contents(kCopy), QByteArray("second"));
    }
    // As after a kill.
    const std::vector<FoundCopy> found = findSyncedCopies(folder.path());
    QCOMPARE(found.size(), std::size_t(1));
    QCOMPARE(found[0].file, folder.path(kName));
    QCOMPARE(found[0].copy, folder.path(kCopy));
  }

  void theCopyIsLockedAfterAnUnfinishedWrite() {
    const test::TestFolder folder;
    SyncedCopy copy;
    copy.protect(folder.path(kName));
    replace(folder, "first");
    // Under its final name already.
    writer = ::open(QFile::encodeName(folder.path(kName)).constData(), O_WRONLY);
    QCOMPARE(int(::syscall(SYS_flock, writer, LOCK_EX)), 0);
    attempts = 0;
    copy.update();
    QCOMPARE(writer, -1);
    QCOMPARE(folder.contents(kCopy), QByteArray("first"));
    QVERIFY(findSyncedCopies(folder.path()).empty());
  }

  void aLockThatIsNeverGivenBackDoesNotStopASync() {
    const test::TestFolder folder;
    SyncedCopy copy;
    copy.protect(folder.path(kName));
    replace(folder, "first");
    const FileDescriptor other(::open(QFile::encodeName(folder.path(kName)).constData(), O_WRONLY));
    QCOMPARE(int(::syscall(SYS_flock, other.number(), LOCK_EX)), 0);
    copy.update();
    QCOMPARE(folder.contents(kCopy), QByteArray("first"));
    copy.finish();
    QCOMPARE(folder.names(), QStringList{kName});
  }

  void aFileThatIsWrittenAgainIsProtectedAgain() {
    const test::TestFolder folder;
    SyncedCopy copy;
    copy.protect(folder.path(kName));
    copy.update();
    QCOMPARE(folder.names(), QStringList());
    copy.protect(folder.path(kName));
    QCOMPARE(folder.names(), QStringList{kCopy});
    replace(folder, "second");
    QVERIFY(findSyncedCopies(folder.path()).empty());
    copy.update();
    QCOMPARE(folder.contents(kCopy), QByteArray("second"));
  }

  void aSymbolicLinkIsSyncedWithoutACopy() {
    const test::TestFolder folder;
    folder.write("elsewhere", "first");
    QVERIFY(QFile::link(folder.path("elsewhere"), folder.path(kName)));
    SyncedCopy copy;
    copy.protect(folder.path(kName));
    copy.update();
    QCOMPARE(folder.names(), QStringList({"elsewhere", kName}));
  }

  void nothingStaysOfADeletedFile() {
    const test::TestFolder folder;
    SyncedCopy copy;
    copy.protect(folder.path(kName));
    replace(folder, "first");
    copy.update();
    QVERIFY(QFile::remove(folder.path(kName)));
    copy.update();
    QCOMPARE(folder.names(), QStringList());
  }

  void filesAreSyncedWithoutHardLinks_data() {
    QTest::addColumn<int>("code");
    QTest::newRow("not permitted") << EPERM;
    QTest::newRow("not supported") << EOPNOTSUPP;
    QTest::newRow("another device") << EXDEV;
  }
  void filesAreSyncedWithoutHardLinks() {
    QFETCH(int, code);
    const test::TestFolder folder;
    const bool isRun = test::runWithFailingCall(SYS_link, code, [&folder] {
      SyncedCopy copy;
      copy.protect(folder.path(kName));
      replace(folder, "first");
      try {
        copy.update();
      } catch (const FileError&) {
        ::_exit(2);
      }
    });
    QVERIFY(isRun);
    QCOMPARE(folder.names(), QStringList{kName});
  }
};

QTEST_GUILESS_MAIN(SyncedCopyTest)
#include "synced_copy_test.moc"
