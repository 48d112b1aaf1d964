// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_store.h"

#include "language/localization.h"
#include "model/session_file/session_file.h"
#include "support/no_more_threads.h"
#include "support/session_samples.h"
#include "support/suite.h"
#include "support/test_folder.h"
#include "support/time_zone.h"

#include <QDir>
#include <QFile>
#include <sys/stat.h>
#include <unistd.h>

using namespace velun;

class SessionStoreTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    Suite::init();
    test::setTimeZone("Asia/Seoul");
    folder_ = std::make_unique<test::TestFolder>();
  }
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void fileNameIsTheLocalTimeAndTheId() {
    const QUrl url = store().save(test::sampleSession());
    QCOMPARE(url, QUrl::fromLocalFile(path("2025-03-01_18-04-58_9F2C4E1A-3B7D-4C8E-A1F0-"
                                           "5D6E7F809A1B.json")));
    const QByteArray bytes = folder_->contents(url.fileName());
    QCOMPARE(bytes, encodeSession(test::sampleSession()));
    QVERIFY(bytes.contains("\"startedAt\" : \"2025-03-01T09:04:58Z\""));
    QVERIFY(store().read(url) == test::sampleSession());
  }

  void fractionsOfASecondDoNotChangeTheFileName() {
    CaptionSession session = test::sampleSession();
    const QUrl url = store().save(session);
    session.startedAt += std::chrono::microseconds(999'999);
    QCOMPARE(store().save(session), url);
  }

  void savingAgainWritesTheSameFile() {
    CaptionSession session = test::sampleSession();
    const QUrl first = store().save(session);
    session.lines.push_back(Line());
    QCOMPARE(store().save(session), first);
    QCOMPARE(folder_->names(), QStringList{first.fileName()});
    QCOMPARE(store().read(first).lines.size(), 3u);
  }

  void aSessionKeepsItsFileWhenTheTimeZoneChanges() {
    CaptionSession session = test::sampleSession();
    const QUrl first = store().save(session);
    test::setTimeZone("America/New_York");
    session.lines.push_back(Line());
    QCOMPARE(store().save(session), first);
    CaptionSession other = test::sampleSession();
    other.id = QUuid::createUuid();
    const QUrl second = store().save(other);
    test::setTimeZone("Asia/Seoul");
    QVERIFY(second.fileName().startsWith("2025-03-01_04-04-58_"));
    QCOMPARE(store().save(session), first);
    QCOMPARE(store().save(other), second);
    QCOMPARE(folder_->names().size(), 2);
    QCOMPARE(store().read(first).lines.size(), 3u);
  }

  void aCopyThatTheUserNamedIsNotTheSessionsFile() {
    const CaptionSession session = test::sampleSession();
    const QUrl first = store().save(session);
    QVERIFY(QFile::rename(first.toLocalFile(), path("Talk of " + first.fileName())));
    QCOMPARE(store().save(session), first);
    QCOMPARE(folder_->names().size(), 2);
  }

  void sessionsOfTheSameSecondHaveDifferentFiles() {
    CaptionSession other = test::sampleSession();
    other.id = QUuid::createUuid();
    QVERIFY(store().save(test::sampleSession()) != store().save(other));
    QCOMPARE(folder_->names().size(), 2);
  }

  void savingWithAnEncoderWritesTheSameFile() {
    CaptionSession session = test::longSession(20);
    SessionEncoder encoder;
    for (int i = 0; i < 3; ++i) {
      const QUrl url = store().save(session, &encoder);
      QCOMPARE(folder_->contents(url.fileName()), encodeSession(session));
      session.lines.push_back(Line());
    }
  }

  void folderAndFileAreReadableByTheUserOnly() {
    const SessionStore deep{QUrl::fromLocalFile(path("a/b/Sessions"))};
    const QString file = deep.save(test::sampleSession()).toLocalFile();
    QCOMPARE(folder_->mode("a/b/Sessions/" + QFileInfo(file).fileName()), 0600u);
    for (const char* name : {"a", "a/b", "a/b/Sessions"}) QCOMPARE(folder_->mode(name), 0700u);
  }

  void reportsAFolderThatCannotBeCreated() {
    folder_->write("file", "x");
    const SessionStore inside{QUrl::fromLocalFile(path("file/Sessions"))};
    QCOMPARE(failure([&] { inside.save(test::sampleSession()); }),
             QString("“Sessions” couldn’t be written: Not a directory."));
    QCOMPARE(folder_->contents("file"), QByteArray("x"));
  }

  void reportsAFileThatCannotBeReplaced() {
    const QUrl url = store().save(test::sampleSession());
    const QString file = url.toLocalFile();
    QVERIFY(QFile::remove(file));
    QVERIFY(QDir().mkdir(file));
    QVERIFY(failure([&] { store().save(test::sampleSession()); }).contains(url.fileName()));
    QCOMPARE(folder_->names(), QStringList{url.fileName()});
  }

  void reportsARemoteFile() {
    const QUrl elsewhere("sftp://example.org/talks/first.json");
    QCOMPARE(failure([&] { store().read(elsewhere); }),
             QString("“sftp://example.org/talks/first.json” is not a file on this computer."));
  }

  void reportsAMissingFile() {
    const QUrl url = QUrl::fromLocalFile(path("none.json"));
    QCOMPARE(failure([&] { store().read(url); }), QString("“none.json” doesn’t exist."));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(failure([&] { store().read(url); }), QString("“none.json” 항목이 없습니다."));
  }

  void readsOtherExtensionsAsJson() {
    folder_->write("talk.txt", encodeSession(test::sampleSession()));
    QVERIFY(store().read(QUrl::fromLocalFile(path("talk.txt"))) == test::sampleSession());
    folder_->write("talk", encodeSession(test::sampleSession()));
    QVERIFY(store().read(QUrl::fromLocalFile(path("talk"))) == test::sampleSession());
    folder_->write("old.MD", "# 자막 세션 — \n`1` a\n");
    QCOMPARE(store().read(QUrl::fromLocalFile(path("old.MD"))).lines.size(), 1u);
  }

  void rejectsAHugeFileWithoutReadingIt() {
    folder_->write("huge.json", "");
    QCOMPARE(::truncate(QFile::encodeName(path("huge.json")).constData(), kMaxSessionFileSize + 1),
             0);
    QCOMPARE(failure([&] { store().read(QUrl::fromLocalFile(path("huge.json"))); }),
             QString("“huge.json” is larger than 256 MB, more than a session can be."));
  }

  void failedReadDoesNotChangeTheFile() {
    folder_->write("bad.json", "{");
    QVERIFY(!failure([&] { store().read(QUrl::fromLocalFile(path("bad.json"))); }).isEmpty());
    QCOMPARE(store().savedSessions().unreadableCount, 1);
    QCOMPARE(folder_->contents("bad.json"), QByteArray("{"));
  }

  void missingFolderIsAnEmptyListing() {
    const SessionStore none{QUrl::fromLocalFile(path("none"))};
    const SessionStore::Listing listing = none.savedSessions();
    QVERIFY(listing.sessions.empty());
    QCOMPARE(listing.unreadableCount, 0);
    QVERIFY(!QFileInfo::exists(path("none")));
  }

  void reportsAFolderThatCannotBeListed() {
    folder_->write("file", "x");
    const SessionStore file{QUrl::fromLocalFile(path("file"))};
    QVERIFY(!failure([&] { file.savedSessions(); }).isEmpty());
  }

  void folderThatCannotBeReachedIsNotAnEmptyListing() {
    QVERIFY(QFile::link("circle", path("circle")));
    for (const QString& name : {path("circle"), path("circle/Sessions")}) {
      const SessionStore unreachable{QUrl::fromLocalFile(name)};
      QVERIFY(!failure([&] { unreachable.savedSessions(); }).isEmpty());
    }
  }

  void listsOnlyVisibleSessionFiles() {
    const QByteArray bytes = encodeSession(test::sampleSession());
    for (const char* name : {"a.json", "x.JSON", ".y.json", "notes.txt", "json", "z.json.bak"}) {
      folder_->write(QString::fromLatin1(name), bytes);
    }
    folder_->write("m.Md", "# 자막 세션 — \n`1` a\n");
    QVERIFY(QDir().mkpath(path("folder/below")));
    const SessionStore::Listing listing = store().savedSessions();
    QCOMPARE(listing.unreadableCount, 0);
    QStringList listed;
    for (const SavedSession& saved : listing.sessions) listed += saved.url.fileName();
    listed.sort();
    QCOMPARE(listed, (QStringList{"a.json", "m.Md", "x.JSON"}));
  }

  void countsUnreadableFiles() {
    QByteArray newer = encodeSession(test::sampleSession());
    newer.replace("\"schemaVersion\" : 1", "\"schemaVersion\" : 2");
    folder_->write("newer.json", newer);
    folder_->write("broken.json", "{");
    folder_->write("empty.json", "");
    folder_->write("notes.md", "# Notes\n");
    folder_->write("binary.md", "# 자막 세션 — \n\xFF");
    QVERIFY(QDir(folder_->path()).mkdir("folder.json"));
    QCOMPARE(::mkfifo(QFile::encodeName(path("pipe.json")).constData(), 0600), 0);
    QVERIFY(QFile::link("/dev/zero", path("endless.json")));
    QVERIFY(QFile::link(path("nowhere"), path("dangling.json")));
    store().save(test::sampleSession());
    const SessionStore::Listing listing = store().savedSessions();
    QCOMPARE(listing.sessions.size(), 1u);
    QCOMPARE(listing.unreadableCount, 9);
  }

  void listsNewestFirst() {
    CaptionSession session = test::sampleSession();
    for (const int hour : {3, 9, 1, 7}) {
      session.id = QUuid::createUuid();
      session.startedAt = test::utc(2025, 3, 1, hour, 0, 0);
      store().save(session);
    }
    const SessionStore::Listing listing = store().savedSessions();
    QCOMPARE(listing.sessions.size(), 4u);
    for (std::size_t i = 0; i < 4; ++i) {
      const int hours[] = {9, 7, 3, 1};
      QVERIFY(listing.sessions[i].session.startedAt == test::utc(2025, 3, 1, hours[i], 0, 0));
    }
  }

  void equalStartTimesKeepTheOrderOfTheFolder() {
    QStringList expected;
    for (int i = 0; i < 40; ++i) {
      CaptionSession session = test::sampleSession();
      session.id = QUuid::createUuid();
      const QString name = QStringLiteral("%1.json").arg(i, 2, 10, QLatin1Char('0'));
      folder_->write(name, encodeSession(session));
      expected += name;
    }
    QStringList listed;
    for (const SavedSession& saved : store().savedSessions().sessions) {
      listed += saved.url.fileName();
    }
    QCOMPARE(listed, expected);
  }

  void oneThreadReadsAllIfThereAreNoMoreThreads() {
    for (int i = 0; i < 5; ++i) {
      CaptionSession session = test::sampleSession();
      session.id = QUuid::createUuid();
      store().save(session);
    }
    const test::NoMoreThreads few;
    QCOMPARE(store().savedSessions().sessions.size(), 5u);
  }

  void listsLegacyTranscriptsWithALocalizedTitle() {
    folder_->write("2024-11-02_20-15-00.md", "# 자막 세션 — \n`1` a\n");
    Localization::shared().setLanguage(AppLanguage::korean);
    const SessionStore::Listing listing = store().savedSessions();
    QCOMPARE(listing.sessions.size(), 1u);
    QCOMPARE(listing.sessions[0].session.title, QString("자막 세션"));
    QVERIFY(listing.sessions[0].session.startedAt == test::utc(2024, 11, 2, 11, 15, 0));
  }

  void listsFileNamesInAnyScript() {
    folder_->write("회의 100%.json", encodeSession(test::sampleSession()));
    const SessionStore::Listing listing = store().savedSessions();
    QCOMPARE(listing.sessions.size(), 1u);
    QCOMPARE(listing.sessions[0].url.toLocalFile(), path("회의 100%.json"));
    QVERIFY(store().read(listing.sessions[0].url) == test::sampleSession());
  }

 private:
  SessionStore store() const { return {QUrl::fromLocalFile(folder_->path())}; }
  QString path(const QString& name) const { return folder_->path(name); }

  template <class Action>
  static QString failure(Action action) {
    try {
      action();
    } catch (const SessionError& error) {
      return error.errorDescription();
    }
    return {};
  }

  std::unique_ptr<test::TestFolder> folder_;
};

QTEST_GUILESS_MAIN(SessionStoreTest)
#include "session_store_test.moc"
