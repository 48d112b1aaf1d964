// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/listing/session_index.h"

#include "captions/sessions_folder.h"
#include "model/listing/session_listing.h"
#include "platform/foundation/atomic_file.h"
#include "platform/foundation/file_descriptor.h"
#include "support/suite.h"

#include <fcntl.h>
#include <QThreadPool>
#include <sys/file.h>
#include <sys/stat.h>

using namespace velun;
using namespace std::chrono_literals;

namespace {

CaptionSession withText(const QString& title, const QString& text) {
  CaptionSession session;
  session.title = title;
  session.endedAt = session.startedAt + 5min;
  Line line;
  line.text = text;
  line.sourceLanguage = "en_US";
  line.input = AudioInput::microphone;
  line.translations["de"] = "Übersetzt";
  session.lines = {line};
  return session;
}

/// A library with an index. Each listing is that of a program which has just started.
struct Library : test::SessionsFolder {
  Library() { store.indexFile = indexPath(); }

  QString indexPath() const { return folder.filePath("cache/sessions.index"); }
  QByteArray indexBytes() const { return test::contentsOf(QUrl::fromLocalFile(indexPath())); }
  QString place() const { return store.directory.toLocalFile(); }

  /// Some time after the last change.
  SessionListing list() const {
    return listSessions(store, {}, "legacy", {}, currentInstant() + 1h);
  }
  /// The same without an index: what the files say.
  SavedSessions truth() const {
    SessionStore plain = store;
    plain.indexFile.clear();
    return listSessions(plain, {}, "legacy", {}, currentInstant() + 1h).sessions;
  }
  SavedSessions indexed() const { return SessionIndex{indexPath(), place()}.read(); }

  void put(const QByteArray& bytes) const { writeFileAtomically(indexPath(), bytes, false); }
};

bool areEqual(const SavedSessions& left, const SavedSessions& right) {
  return std::ranges::equal(left, right, [](const auto& a, const auto& b) { return *a == *b; });
}

/// The index holds what the files say, and a listing that uses it does too.
bool isTrue(const Library& library) {
  SavedSessions indexed = library.indexed();
  std::ranges::sort(indexed, isBefore);
  return areEqual(indexed, library.truth()) && areEqual(library.list().sessions, library.truth());
}

}  // namespace

class SessionIndexTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void theIndexIsUsedWithoutReadingFiles() {
    Library library;
    const QUrl url = library.store.save(withText("One", "river"));
    library.list();
    SavedSessions indexed = library.indexed();
    QCOMPARE(indexed.size(), std::size_t(1));
    // An entry that no file could give shows that none is read.
    ListedSession other = *indexed[0];
    other.summary.title = "From the index";
    library.put(encodeIndex({std::make_shared<const ListedSession>(other)}, library.place()));
    QCOMPARE(library.list().sessions.at(0)->summary.title, QString("From the index"));
  }

  void theIndexFollowsEveryChange() {
    Library library;
    CaptionSession first = withText("One", "river");
    const QUrl one = library.store.save(first);
    library.store.save(withText("Two", "sea"));
    library.list();
    QCOMPARE(library.indexed().size(), std::size_t(2));
    QVERIFY(isTrue(library));

    first.title = "Changed";
    first.lines.push_back(first.lines[0]);
    library.store.save(first);
    library.list();
    QVERIFY(isTrue(library));

    library.store.save(withText("Three", "hill"));
    library.list();
    QCOMPARE(library.indexed().size(), std::size_t(3));
    QVERIFY(isTrue(library));

    QVERIFY(QFile::rename(one.toLocalFile(), library.place() + "/a new name.json"));
    library.list();
    QCOMPARE(library.indexed().size(), std::size_t(3));
    QVERIFY(isTrue(library));

    QVERIFY(QFile::remove(library.place() + "/a new name.json"));
    library.list();
    QCOMPARE(library.indexed().size(), std::size_t(2));
    QVERIFY(isTrue(library));
  }

  void nothingOfADeletedSessionStays() {
    Library library;
    library.store.save(withText("Public", "river"));
    const QUrl secret = library.store.save(withText("Secret title", "secret words"));
    library.list();
    const auto holds = [&library](const QString& text) {
      // QDataStream writes UTF-16 in network byte order.
      QByteArray bytes;
      for (const QChar letter : text) bytes.append(char(letter.row())).append(char(letter.cell()));
      return library.indexBytes().contains(bytes);
    };
    QVERIFY(holds("Secret title") && holds("secret words"));
    QVERIFY(QFile::remove(secret.toLocalFile()));
    library.list();
    QVERIFY(!holds("Secret title") && !holds("secret words"));
    QVERIFY(holds("Public"));
  }

  void nothingOfAKilledWriterStays() {
    Library library;
    library.store.save(withText("One", "river"));
    library.list();
    const QString part = library.folder.filePath("cache/.sessions.index.velun-part");
    QVERIFY(QFile::copy(library.indexPath(), part));
    // Nothing has changed, so that the index is not written.
    library.list();
    QVERIFY(!QFile::exists(part));
    QCOMPARE(library.indexed().size(), std::size_t(1));
  }

  void anOldListingBringsNoDeletedSessionBack() {
    Library library;
    const QUrl url = library.store.save(withText("One", "river"));
    const SavedSessions before = library.list().sessions;
    QVERIFY(QFile::remove(url.toLocalFile()));
    library.list();
    // Another program, which listed the folder before.
    SessionIndex{library.indexPath(), library.place()}.write(before, currentInstant() + 1h);
    QVERIFY(library.indexed().empty());
  }

  void aFileThatHasJustChangedIsNotIndexed() {
    Library library;
    CaptionSession session = withText("One", "river");
    library.store.save(session);
    library.list();
    session.title = "Two";
    library.store.save(session);
    listSessions(library.store, {}, "legacy", {});
    QVERIFY(library.indexed().empty());
  }

  void onlyTheUserCanReadTheIndex() {
    Library library;
    library.store.save(withText("One", "river"));
    const auto expected = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    library.list();
    QCOMPARE(QFile::permissions(library.indexPath()), expected);
    QVERIFY(QFile::setPermissions(library.indexPath(), expected | QFile::ReadOther));
    library.store.save(withText("Two", "river"));
    library.list();
    QCOMPARE(QFile::permissions(library.indexPath()), expected);
  }

  void anUnusableIndexIsReplaced_data() {
    QTest::addColumn<QByteArray>("bytes");
    Library library;
    library.store.save(withText("One", "river"));
    library.list();
    const QByteArray good = library.indexBytes();
    QVERIFY(decodeIndex(good, library.place()));
    QByteArray otherVersion = good;
    otherVersion[0] = char(otherVersion[0] + 1);
    QByteArray damaged = good;
    damaged[damaged.size() - 300] = char(damaged[damaged.size() - 300] ^ 1);
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("no index");
    QTest::newRow("head only") << good.left(44);
    QTest::newRow("cut off") << good.chopped(1);
    QTest::newRow("longer") << good + '\0';
    QTest::newRow("another version") << otherVersion;
    QTest::newRow("damaged") << damaged;
    QTest::newRow("of another folder") << good;
  }
  void anUnusableIndexIsReplaced() {
    QFETCH(QByteArray, bytes);
    Library library;
    library.store.save(withText("Two", "sea"));
    library.list();
    library.put(bytes);
    QVERIFY(!decodeIndex(bytes, library.place()));
    QCOMPARE(library.list().sessions.size(), std::size_t(1));
    QVERIFY(isTrue(library));
    QCOMPARE(library.indexed().size(), std::size_t(1));
  }

  void aDamagedIndexWithAGoodHeadIsReplaced() {
    Library library;
    library.store.save(withText("One", "river"));
    library.list();
    library.put(library.indexBytes().chopped(1));
    library.list();
    QCOMPARE(library.indexed().size(), std::size_t(1));
  }

  void sessionsAreListedWhereNoIndexCanBeWritten() {
    Library library;
    library.store.save(withText("One", "river"));
    QVERIFY(QDir(library.folder.path()).mkpath("cache/sessions.index"));
    QCOMPARE(library.list().sessions.size(), std::size_t(1));
    library.store.indexFile = "/proc/none/sessions.index";
    QCOMPARE(library.list().sessions.size(), std::size_t(1));
  }

  void aPipeInPlaceOfTheIndexIsReplaced() {
    Library library;
    library.store.save(withText("One", "river"));
    QVERIFY(QDir(library.folder.path()).mkpath("cache"));
    QCOMPARE(::mkfifo(QFile::encodeName(library.indexPath()).constData(), 0600), 0);
    QCOMPARE(library.list().sessions.size(), std::size_t(1));
    QCOMPARE(library.indexed().size(), std::size_t(1));
  }

  void aLockThatIsNeverReleasedKeepsNobodyWaiting() {
    Library library;
    library.store.save(withText("One", "river"));
    library.list();
    const QByteArray folder = QFile::encodeName(QFileInfo(library.indexPath()).path());
    const FileDescriptor other(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    QVERIFY(::flock(other.number(), LOCK_EX) == 0);
    library.store.save(withText("Two", "sea"));
    QCOMPARE(library.list().sessions.size(), std::size_t(2));
    QVERIFY(library.indexed().empty());
  }

  void twoProgramsAtOnceLeaveAGoodIndex() {
    Library library;
    for (int i = 0; i < 20; ++i) library.store.save(withText(QString::number(i), "river"));
    QThreadPool programs;
    std::atomic<int> wrong = 0;
    for (int i = 0; i < 2; ++i) {
      programs.start([&library, &wrong] {
        for (int round = 0; round < 20; ++round) {
          library.store.save(withText("new", "sea"));
          if (library.list().sessions.size() < 20) ++wrong;
        }
      });
    }
    QVERIFY(programs.waitForDone(60'000));
    QCOMPARE(wrong, 0);
    library.list();
    QCOMPARE(library.indexed().size(), std::size_t(60));
    QVERIFY(isTrue(library));
  }

  void filesOfOtherFoldersAreNotIndexed() {
    Library library;
    const QUrl inside = library.store.save(withText("One", "river"));
    const QString outside = library.folder.filePath("guest.json");
    QVERIFY(QFile::copy(inside.toLocalFile(), outside));
    const SessionListing listing = listSessions(library.store, {QUrl::fromLocalFile(outside)},
                                                "legacy", {}, currentInstant() + 1h);
    QCOMPARE(listing.sessions.size(), std::size_t(2));
    QCOMPARE(library.indexed().size(), std::size_t(1));
  }
};

QTEST_GUILESS_MAIN(SessionIndexTest)
#include "session_index_test.moc"
