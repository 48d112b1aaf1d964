// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_store.h"

#include "model/session_file/session_file.h"
#include "support/saved_sessions.h"
#include "support/session_samples.h"
#include "support/suite.h"
#include "support/test_folder.h"
#include "support/time_zone.h"

#include <QDir>
#include <QFile>

using namespace velun;

class SessionStoreTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void init() {
    Suite::init();
    test::setTimeZone("Asia/Seoul");
    folder_ = std::make_unique<test::TestFolder>();
  }

  void fileNameIsTheLocalTimeAndTheId() {
    const QUrl url = store().save(test::sampleSession());
    QCOMPARE(url, QUrl::fromLocalFile(path("2025-03-01_18-04-58_9F2C4E1A-3B7D-4C8E-A1F0-"
                                           "5D6E7F809A1B.json")));
    const QByteArray bytes = folder_->contents(url.fileName());
    QCOMPARE(bytes, encodeSession(test::sampleSession()));
    QVERIFY(bytes.contains("\"startedAt\" : \"2025-03-01T09:04:58Z\""));
    QVERIFY(test::readSession(url) == test::sampleSession());
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
    QCOMPARE(test::readSession(first).lines.size(), 3u);
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
    QCOMPARE(test::readSession(first).lines.size(), 3u);
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
