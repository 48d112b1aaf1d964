// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/session_file.h"
#include "model/session_store.h"
#include "support/saved_sessions.h"
#include "support/session_samples.h"
#include "support/suite.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>

using namespace velun;

class SessionMigrationTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    Suite::init();
    // The tests have a private home folder.
    for (const char* name : {"Velun", "Parvelo", "OrlanceV2"}) {
      if (QFileInfo(path(name)).isDir()) {
        QVERIFY(QDir(path(name)).removeRecursively());
      } else {
        QFile::remove(path(name));
      }
    }
  }

  void localStoreIsInTheDataFolder() {
    QCOMPARE(SessionStore::local().directory, QUrl::fromLocalFile(path("Velun/Sessions")));
    QCOMPARE(&SessionStore::local(), &SessionStore::local());
  }

  void firstListingMovesTheFirstEarlierFolder() {
    putSession("Parvelo");
    putSession("OrlanceV2");
    QCOMPARE(test::savedSessions(SessionStore::local()).size(), 1u);
    QVERIFY(QFileInfo::exists(path("Velun/Sessions/Parvelo.json")));
    QVERIFY(!QFileInfo::exists(path("Parvelo")));
    QVERIFY(QFileInfo::exists(path("OrlanceV2/Sessions/OrlanceV2.json")));
    test::listingOf(SessionStore::local());
    QVERIFY(QFileInfo::exists(path("OrlanceV2")));
  }

  void movesTheSecondEarlierFolderIfItIsTheOnlyOne() {
    putSession("OrlanceV2");
    SessionStore::local().migratePreviousFolder();
    QVERIFY(QFileInfo::exists(path("Velun/Sessions/OrlanceV2.json")));
    QVERIFY(!QFileInfo::exists(path("OrlanceV2")));
  }

  void firstSaveMovesTheEarlierFolder() {
    putSession("Parvelo");
    CaptionSession session = test::sampleSession();
    session.id = QUuid::createUuid();
    SessionStore::local().save(session);
    QCOMPARE(test::savedSessions(SessionStore::local()).size(), 2u);
  }

  void readingDoesNotMoveFolders() {
    putSession("Parvelo");
    test::readSession(QUrl::fromLocalFile(path("Parvelo/Sessions/Parvelo.json")));
    QVERIFY(QFileInfo::exists(path("Parvelo")));
    QVERIFY(!QFileInfo::exists(path("Velun")));
  }

  void doesNotMoveOverAnExistingFolder() {
    QVERIFY(QDir().mkpath(path("Velun")));
    putSession("Parvelo");
    QVERIFY(test::savedSessions(SessionStore::local()).empty());
    QVERIFY(QFileInfo::exists(path("Parvelo/Sessions/Parvelo.json")));
    QVERIFY(!QFileInfo::exists(path("Velun/Sessions")));
  }

  void otherStoresDoNotMoveFolders() {
    putSession("Parvelo");
    const QTemporaryDir folder;
    const SessionStore store{QUrl::fromLocalFile(folder.path())};
    store.migratePreviousFolder();
    store.save(test::sampleSession());
    QCOMPARE(test::savedSessions(store).size(), 1u);
    QVERIFY(QFileInfo::exists(path("Parvelo")));
    QVERIFY(!QFileInfo::exists(path("Velun")));
  }

  void ignoresAFailedMove() {
    putSession("Parvelo");
    // The link's target does not exist, but no folder can replace the link.
    QVERIFY(QFile::link(path("nowhere"), path("Velun")));
    const SessionListing listing = test::listingOf(SessionStore::local());
    QVERIFY(listing.sessions.empty());
    QCOMPARE(listing.unreadableCount, 0);
    QVERIFY(QFileInfo::exists(path("Parvelo/Sessions/Parvelo.json")));
  }

  void movesAFileInPlaceOfAFolderAndReportsItOnSave() {
    QFile file(path("Parvelo"));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    SessionStore::local().migratePreviousFolder();
    QVERIFY(QFileInfo(path("Velun")).isFile());
    QVERIFY_EXCEPTION_THROWN(SessionStore::local().save(test::sampleSession()), std::exception);
    QVERIFY(QFile::remove(path("Velun")));
  }

 private:
  static QString path(const QString& name) {
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + '/' + name;
  }

  /// Creates a data folder of that name with one session of the same title.
  static void putSession(const QString& name) {
    const QString folder = path(name + "/Sessions");
    if (!QDir().mkpath(folder)) qFatal("cannot make the folder");
    QFile file(folder + '/' + name + ".json");
    if (!file.open(QIODevice::WriteOnly)) qFatal("cannot write");
    file.write(encodeSession(test::sampleSession()));
  }
};

QTEST_GUILESS_MAIN(SessionMigrationTest)
#include "session_migration_test.moc"
