// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/listing/session_listing.h"

#include "captions/sessions_folder.h"
#include "model/session_file/session_file.h"
#include "support/suite.h"

using namespace velun;
using namespace std::chrono_literals;

namespace {

struct Folder : test::SessionsFolder {
  QUrl save(CaptionSession session, const QString& title) {
    session.title = title;
    return store.save(session);
  }

  /// A listing some time after the last change.
  SessionListing list(const SavedSessions& known = {}, const QList<QUrl>& opened = {}) {
    return listSessions(store, opened, "legacy", known, currentInstant() + 1h);
  }

  /// The entry of a listing that has one.
  std::shared_ptr<const ListedSession> only(const SessionListing& listing) {
    return listing.sessions.size() == 1 ? listing.sessions[0] : nullptr;
  }
};

}  // namespace

class SessionListingTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void anUnchangedFileIsNotReadAgain() {
    Folder folder;
    folder.save({}, "One");
    const SessionListing first = folder.list();
    folder.save({}, "Two");
    const SessionListing second = folder.list(first.sessions);
    QCOMPARE(second.sessions.size(), std::size_t(2));
    QVERIFY(std::ranges::find(second.sessions, first.sessions.at(0)) != second.sessions.end());
  }

  void aFileThatWasWrittenAgainIsRead() {
    Folder folder;
    CaptionSession session;
    folder.save(session, "One");
    const SessionListing first = folder.list();
    folder.save(session, "Two");
    QCOMPARE(folder.only(folder.list(first.sessions))->summary.title, QString("Two"));
  }

  void aFileThatWasChangedInPlaceIsRead() {
    Folder folder;
    CaptionSession session;
    const QUrl url = folder.save(session, "One");
    const SessionListing first = folder.list();
    session.title = "Owe";
    QFile file(url.toLocalFile());
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.write(encodeSession(session)) > 0);
    file.close();
    QCOMPARE(folder.only(folder.list(first.sessions))->summary.title, QString("Owe"));
  }

  void aFileThatHasJustChangedIsAlwaysReadAgain() {
    Folder folder;
    folder.save({}, "One");
    const auto list = [&](const SavedSessions& known) {
      return listSessions(folder.store, {}, "legacy", known);
    };
    const SessionListing first = list({});
    QVERIFY(folder.only(first) && !folder.only(first)->stamp);
    QVERIFY(folder.only(list(first.sessions)) != folder.only(first));
  }

  void aDeletedFileIsListedNoMore() {
    Folder folder;
    const QUrl url = folder.save({}, "One");
    const SessionListing first = folder.list();
    QVERIFY(QFile::remove(url.toLocalFile()));
    QVERIFY(folder.list(first.sessions).sessions.empty());
  }

  void aFileThatCannotBeReadAnyMoreIsCounted() {
    Folder folder;
    const QUrl url = folder.save({}, "One");
    const SessionListing first = folder.list();
    QFile file(url.toLocalFile());
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("[]") == 2);
    file.close();
    const SessionListing second = folder.list(first.sessions);
    QVERIFY(second.sessions.empty());
    QCOMPARE(second.unreadableCount, 1);
  }

  void openedFilesAreListedOnce() {
    Folder folder;
    const QUrl inside = folder.save({}, "One");
    const QString outside = folder.folder.filePath("guest.json");
    QVERIFY(QFile::copy(inside.toLocalFile(), outside));
    const QList<QUrl> opened{inside, QUrl::fromLocalFile(outside)};
    const SessionListing first = folder.list({}, opened);
    QCOMPARE(first.sessions.size(), std::size_t(2));
    const SessionListing second = folder.list(first.sessions, opened);
    QVERIFY(second.sessions == first.sessions);
  }

  void anEarlierTranscriptFollowsTheLanguage() {
    Folder folder;
    QVERIFY(QDir().mkpath(folder.store.directory.toLocalFile()));
    QFile file(folder.store.directory.toLocalFile() + "/2024-01-02_20-15-00.md");
    QVERIFY(file.open(QIODevice::WriteOnly) &&
            file.write("# 자막 세션 — 2024-01-02\n\n`20:15:03` Hello\n") > 0);
    file.close();
    const SessionListing first = folder.list();
    const SessionListing second =
        listSessions(folder.store, {}, "other", first.sessions, currentInstant() + 1h);
    QCOMPARE(folder.only(second)->summary.title, QString("other"));
  }
};

QTEST_GUILESS_MAIN(SessionListingTest)
#include "session_listing_test.moc"
