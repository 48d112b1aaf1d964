// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_recovery.h"

#include "model/session_file/session_file.h"
#include "model/session_store.h"
#include "platform/foundation/synced_copy.h"
#include "support/saved_sessions.h"
#include "support/session_samples.h"
#include "support/suite.h"
#include "support/test_folder.h"

#include <sys/stat.h>

using namespace velun;

namespace {

const QString kName = "talk.json";
const QString kCopy = ".talk.json.velun-synced";
const QString kSyncing = ".talk.json.velun-syncing";

const QByteArray& older() {
  static const QByteArray bytes = encodeSession(test::longSession(3));
  return bytes;
}

const QByteArray& newer() {
  static const QByteArray bytes = encodeSession(test::longSession(5));
  return bytes;
}

}  // namespace

class SessionRecoveryTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void recoversWhatAPowerLossLeft_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QByteArray>("copy");
    QTest::addColumn<QByteArray>("recovered");
    QTest::addColumn<QStringList>("names");
    const QByteArray zeros(4096, '\0');
    const QByteArray half = newer().left(newer().size() / 2);
    const QStringList file{kName};
    const QStringList both{kName, kName + ".damaged"};
    QTest::newRow("valid file") << newer() << older() << newer() << file;
    QTest::newRow("empty file") << QByteArray() << older() << older() << file;
    QTest::newRow("file of zeros") << zeros << older() << older() << file;
    QTest::newRow("half a file") << half << older() << older() << both;
    QTest::newRow("first version lost")
        << QByteArray() << QByteArray() << QByteArray() << QStringList();
    QTest::newRow("half a first version")
        << half << QByteArray() << QByteArray() << QStringList{kName + ".damaged"};
  }
  void recoversWhatAPowerLossLeft() {
    QFETCH(QByteArray, file);
    QFETCH(QByteArray, copy);
    QFETCH(QByteArray, recovered);
    QFETCH(QStringList, names);
    const test::TestFolder folder;
    folder.write(kName, file);
    folder.write(kCopy, copy);
    folder.write(kSyncing, newer());
    folder.write("." + kName + ".velun-part", half(newer()));
    recoverSessions(folder.path());
    QCOMPARE(folder.names(), names);
    if (!recovered.isEmpty()) QCOMPARE(folder.contents(kName), recovered);
  }

  void aDeletedSessionStaysDeleted() {
    const test::TestFolder folder;
    folder.write(kCopy, older());
    recoverSessions(folder.path());
    QCOMPARE(folder.names(), QStringList());
  }

  void everyDamagedFileIsKept() {
    const test::TestFolder folder;
    folder.write(kName + ".damaged", "first");
    folder.write(kName, "second");
    folder.write(kCopy, older());
    recoverSessions(folder.path());
    QCOMPARE(folder.contents(kName + ".damaged"), QByteArray("first"));
    QCOMPARE(folder.contents(kName + ".damaged-2"), QByteArray("second"));
    QCOMPARE(folder.contents(kName), older());
  }

  void aFileInUseIsLeftAlone() {
    const test::TestFolder folder;
    folder.write(kName, older());
    SyncedCopy copy;
    copy.protect(folder.path(kName));
    folder.write(kSyncing, newer());
    QVERIFY(QFile::remove(folder.path(kName)));
    folder.write(kName, "");
    recoverSessions(folder.path());
    QCOMPARE(folder.names(), QStringList({kCopy, kSyncing, kName}));
    QCOMPARE(folder.contents(kName), QByteArray());
    QCOMPARE(folder.contents(kCopy), older());
  }

  void damagedFilesWithoutACopyAreLeftAlone() {
    const test::TestFolder folder;
    folder.write(kName, "");
    recoverSessions(folder.path());
    QCOMPARE(folder.names(), QStringList{kName});
  }

  void aFileOfANewerVersionIsNotDamaged() {
    const test::TestFolder folder;
    const QByteArray version2 =
        QByteArray(older()).replace("\"schemaVersion\" : 1", "\"schemaVersion\" : 2");
    QVERIFY(version2 != older());
    folder.write(kName, version2);
    folder.write(kCopy, "");
    recoverSessions(folder.path());
    QCOMPARE(folder.names(), QStringList{kName});
    QCOMPARE(folder.contents(kName), version2);
  }

  void pipesDoNotStopTheRecovery() {
    const test::TestFolder folder;
    const QStringList pipes{kSyncing, kCopy, "." + kName + ".velun-part"};
    for (const QString& name : pipes) {
      QCOMPARE(::mkfifo(QFile::encodeName(folder.path(name)).constData(), S_IRWXU), 0);
    }
    folder.write(kName, older());
    recoverSessions(folder.path());
    QCOMPARE(folder.contents(kName), older());
  }

  void listingRecovers() {
    const test::TestFolder folder;
    folder.write(kName, "");
    folder.write(kCopy, older());
    const SessionStore store{QUrl::fromLocalFile(folder.path())};
    const SessionListing listing = test::listingOf(store);
    QCOMPARE(listing.unreadableCount, 0);
    QCOMPARE(listing.sessions.at(0)->summary.lineCount, std::size_t(3));
  }

 private:
  static QByteArray half(const QByteArray& bytes) { return bytes.left(bytes.size() / 2); }
};

QTEST_GUILESS_MAIN(SessionRecoveryTest)
#include "session_recovery_test.moc"
