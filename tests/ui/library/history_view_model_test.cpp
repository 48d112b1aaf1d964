// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/latest_job.h"
#include "support/saved_sessions.h"
#include "ui/library/history_view_model_suite.h"

using namespace velun;

/// Listing, opening, selecting, reading and renaming.
class HistoryViewModelTest final : public test::HistoryViewModelSuite {
  Q_OBJECT

 private Q_SLOTS:
  void listsTheFolderNewestFirst() {
    write("Sessions/old.json", 1);
    write("Sessions/new.json", 3);
    write("Sessions/middle.json", 2);
    reload();
    QCOMPARE(titles(),
             QStringList({"Sessions/new.json", "Sessions/middle.json", "Sessions/old.json"}));
    QVERIFY(!library_->error());
  }

  void countsUnreadableFilesAndListsTheOthers() {
    write("Sessions/good.json", 1);
    for (const char* name : {"Sessions/bad.json", "Sessions/worse.md"}) {
      QFile file(path(name));
      QVERIFY(file.open(QFile::WriteOnly));
      file.write("no session");
    }
    reload();
    QCOMPARE(titles(), QStringList({"Sessions/good.json"}));
    QCOMPARE(library_->error().value_or(QString()),
             QString("Couldn’t read 2 sessions. The original files are still in the sessions "
                     "folder."));
    QSignalSpy changed(library_.get(), &HistoryViewModel::errorChanged);
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(changed.count(), 1);
    QCOMPARE(library_->error().value_or(QString()),
             QString("2개 기록을 읽지 못했습니다. 원본 파일은 기록 폴더에 있습니다."));
  }

  void cleanReloadClearsTheError() {
    QFile bad(path("Sessions/bad.json"));
    QVERIFY(bad.open(QFile::WriteOnly));
    bad.close();
    reload();
    QVERIFY(library_->error());
    QVERIFY(bad.remove());
    reload();
    QVERIFY(!library_->error());
  }

  void selectionStaysWhileItsSessionIsListed() {
    const QUrl kept = write("Sessions/kept.json", 1);
    reload();
    library_->select(kept);
    write("Sessions/other.json", 2);
    reload();
    QCOMPARE(library_->selection().value_or(QUrl()), kept);
    QVERIFY(QFile::remove(kept.toLocalFile()));
    reload();
    QVERIFY(!library_->selection());
  }

  void selectingAnUnlistedFileClearsTheSelection() {
    library_->select(QUrl::fromLocalFile("/elsewhere.json"));
    QVERIFY(!library_->selection());
  }

  void openedFileIsListedInOrderAndSelected() {
    write("Sessions/first.json", 1);
    write("Sessions/third.json", 3);
    reload();
    const QUrl elsewhere = write("elsewhere/second.json", 2);
    open(elsewhere);
    QCOMPARE(titles(),
             QStringList({"Sessions/third.json", "elsewhere/second.json", "Sessions/first.json"}));
    QCOMPARE(library_->selection().value_or(QUrl()), elsewhere);
    QCOMPARE(library_->openedFiles(), QList<QUrl>({elsewhere}));
    reload();
    QCOMPARE(titles().size(), 3);
  }

  void openingAFileAgainKeepsTheOrderOfEqualStarts() {
    const QUrl first = write("Sessions/a.json", 1);
    write("Sessions/b.json", 1);
    reload();
    const QStringList before = titles();
    QCOMPARE(before, QStringList({"Sessions/a.json", "Sessions/b.json"}));
    open(first);
    QCOMPARE(titles(), before);
    open(write("elsewhere/aa.json", 1));
    const QStringList withOther = titles();
    QCOMPARE(withOther, QStringList({"Sessions/a.json", "elsewhere/aa.json", "Sessions/b.json"}));
    reload();
    QCOMPARE(titles(), withOther);
  }

  void openingAListedFileDoesNotDuplicateIt() {
    const QUrl listed = write("Sessions/listed.json", 1);
    QVERIFY(QFile::link(listed.toLocalFile(), path("link.json")));
    reload();
    open(listed);
    QCOMPARE(titles().size(), 1);
    open(QUrl::fromLocalFile(path("Sessions/../Sessions/listed.json")));
    open(QUrl::fromLocalFile(path("link.json")));
    QCOMPARE(titles().size(), 1);
    QCOMPARE(library_->selection().value_or(QUrl()), listed);
    reload();
    QCOMPARE(titles().size(), 1);
  }

  void openingAnUnreadableFileChangesNothing() {
    QFile bad(path("bad.json"));
    QVERIFY(bad.open(QFile::WriteOnly));
    bad.close();
    QCOMPARE(open(QUrl::fromLocalFile(bad.fileName())), QStringList{"“bad.json” is empty."});
    QVERIFY(library_->sessions().empty());
    QVERIFY(library_->openedFiles().isEmpty());
    QVERIFY(!library_->selection());
  }

  void openingDoesNotHoldTheMainThread() {
    const QUrl file = write("elsewhere/talk.json", 1);
    QSignalSpy opened(library_.get(), &HistoryViewModel::filesOpened);
    library_->open({file});
    QVERIFY(library_->isOpening());
    QVERIFY(library_->sessions().empty());
    QVERIFY(opened.wait());
    QCOMPARE(library_->sessions().size(), std::size_t(1));
  }

  void refusesAFileWithVeryManyLanguages() {
    CaptionSession session;
    session.lines.push_back({});
    session.lines[0].translations["ko"] = "a";
    QByteArray bytes = encodeSession(session);
    QByteArray languages;
    for (int i = 0; i < 300'000; ++i) languages += "\"x-" + QByteArray::number(i) + "\":\"a\",";
    bytes.insert(bytes.indexOf("\"ko\""), languages);
    QFile file(path("many.json"));
    QVERIFY(file.open(QFile::WriteOnly));
    file.write(bytes);
    file.close();
    const QStringList problems = open(QUrl::fromLocalFile(file.fileName()));
    QCOMPARE(problems.size(), 1);
    QVERIFY(problems[0].contains("more than 500 languages"));
    QVERIFY(library_->sessions().empty());
  }

  void filesOpenedWhileOthersAreReadAreOpenedToo() {
    QSignalSpy opened(library_.get(), &HistoryViewModel::filesOpened);
    library_->open({write("elsewhere/a.json", 1), QUrl::fromLocalFile("/nowhere.json")});
    library_->open({write("elsewhere/b.json", 2)});
    QTRY_COMPARE(opened.size(), 2);
    QCOMPARE(titles(), QStringList({"elsewhere/b.json", "elsewhere/a.json"}));
    QCOMPARE(opened[0][1].toStringList(), QStringList{"“nowhere.json” doesn’t exist."});
  }

  void deletedOpenedFileCountsAsUnreadable() {
    const QUrl elsewhere = write("elsewhere.json", 1);
    open(elsewhere);
    QVERIFY(QFile::remove(elsewhere.toLocalFile()));
    reload();
    QVERIFY(library_->sessions().empty());
    QVERIFY(library_->error()->contains("read 1 session."));
  }

  void aSelectedFileThatCannotBeReadAnyMoreIsReported() {
    const QUrl a = write("Sessions/a.json", 3);
    const QUrl b = write("Sessions/b.json", 4);
    reload();
    QFile file(a.toLocalFile());
    QVERIFY(file.open(QFile::WriteOnly) && file.write("[]") == 2);
    file.close();
    QSignalSpy reloaded(library_.get(), &HistoryViewModel::reloaded);
    library_->select(a);
    QVERIFY(!library_->selectedSession());
    QVERIFY(reloaded.wait());
    QVERIFY(library_->error());
    QVERIFY(!library_->selection());
    library_->select(b);
    QCOMPARE(library_->selectedSession()->session.title, QString("Sessions/b.json"));
  }

  void severalAreReadTogetherOrNotAtAll() {
    write("Sessions/a.json", 3);
    const QUrl b = write("Sessions/b.json", 4);
    reload();
    QCOMPARE(library_->read(library_->sessions())->at(0).title, QString("Sessions/b.json"));
    QVERIFY(QFile::remove(b.toLocalFile()));
    QVERIFY(!library_->read(library_->sessions()));
  }

  void aSessionGetsAnotherTitle() {
    const QUrl a = write("Sessions/a.json", 3);
    reload();
    const CaptionSession before = test::readSession(a);
    library_->rename(a, " Biology ");
    QCOMPARE(titles(), QStringList({"Biology"}));
    reload();
    CaptionSession after = test::readSession(a);
    QCOMPARE(after.title, "Biology");
    after.title = before.title;
    QVERIFY(after == before);
    library_->rename(a, "");
    QCOMPARE(titles(), QStringList({defaultSessionTitle()}));
    QVERIFY(QFile::remove(a.toLocalFile()));
    QVERIFY_EXCEPTION_THROWN(library_->rename(a, "C"), Failure);
    QVERIFY(!QFile::exists(a.toLocalFile()));
  }

  void listingIsDiscardedAfterDestruction() {
    write("Sessions/a.json", 1);
    library_->reload();
    library_.reset();
    QTRY_COMPARE(LatestJob::pool().activeThreadCount(), 0);
    QCoreApplication::processEvents();
    QVERIFY(!library_);
  }
};

QTEST_GUILESS_MAIN(HistoryViewModelTest)
#include "history_view_model_test.moc"
