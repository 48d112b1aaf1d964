// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/history_view_model.h"

#include "language/localization.h"
#include "model/session_file/session_file.h"
#include "platform/foundation/failure.h"
#include "support/suite.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QThreadPool>

using namespace velun;

class HistoryViewModelTest final : public test::Suite {
  Q_OBJECT

  std::unique_ptr<QTemporaryDir> folder_;
  std::unique_ptr<HistoryViewModel> library_;
  std::optional<QString> trashRefuses_;

  QString path(const QString& name) const { return folder_->filePath(name); }

  /// Writes a session that started `hour` hours into the day; returns its file.
  QUrl write(const QString& name, int hour) const {
    CaptionSession session;
    session.title = name;
    session.startedAt = Instant(std::chrono::hours(24 * 365 + hour));
    session.lines.push_back({});
    QDir().mkpath(QFileInfo(path(name)).path());
    QFile file(path(name));
    if (!file.open(QFile::WriteOnly)) return {};
    file.write(encodeSession(session));
    return QUrl::fromLocalFile(path(name));
  }

  void reload() {
    QSignalSpy reloaded(library_.get(), &HistoryViewModel::reloaded);
    library_->reload();
    QVERIFY(reloaded.wait());
  }

  /// Opens the files; returns why some could not be read.
  QStringList open(const QList<QUrl>& urls) {
    QSignalSpy opened(library_.get(), &HistoryViewModel::filesOpened);
    library_->open(urls);
    if (!opened.wait()) qFatal("The files were not read");
    return opened[0][1].toStringList();
  }
  QStringList open(const QUrl& url) { return open(QList<QUrl>{url}); }

  QStringList titles() const {
    QStringList titles;
    for (const auto& each : library_->sessions()) titles.append(each->summary.title);
    return titles;
  }

  QList<QUrl> visible() const {
    QList<QUrl> urls;
    for (const auto& each : library_->sessions()) urls.append(each->url);
    return urls;
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    Localization::shared().setLanguage(AppLanguage::english);
    folder_ = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(folder_->path()).mkpath("Sessions"));
    trashRefuses_.reset();
    SessionStore store;
    store.directory = QUrl::fromLocalFile(path("Sessions"));
    library_ = std::make_unique<HistoryViewModel>(store, [this](const QUrl& url) {
      if (trashRefuses_) throw Failure(*trashRefuses_);
      QVERIFY(QFile::remove(url.toLocalFile()));
    });
  }

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

  void deletingSelectsTheNextOrThePreviousAtTheEnd() {
    write("Sessions/a.json", 3);
    const QUrl b = write("Sessions/b.json", 2);
    const QUrl c = write("Sessions/c.json", 1);
    reload();
    library_->select(b);
    QCOMPARE(library_->deleteSelection(visible()).value_or(QUrl()), b);
    QVERIFY(!QFile::exists(b.toLocalFile()));
    QCOMPARE(library_->selection().value_or(QUrl()), c);
    library_->deleteSelection(visible());
    QCOMPARE(library_->selectedSession()->session.title, QString("Sessions/a.json"));
    library_->deleteSelection(visible());
    QVERIFY(!library_->selection());
    QVERIFY(library_->sessions().empty());
  }

  void severalAreDeletedAndBroughtBack() {
    const QUrl a = write("Sessions/a.json", 3);
    const QUrl b = write("Sessions/b.json", 2);
    write("Sessions/c.json", 1);
    reload();
    library_->select(b);
    QVERIFY(!library_->canUndoDelete());
    std::exception_ptr failed;
    QCOMPARE(library_->deleteSessions({a, b}, failed), QList<QUrl>({a, b}));
    QVERIFY(!failed);
    QVERIFY(!QFile::exists(a.toLocalFile()));
    QCOMPARE(titles(), QStringList({"Sessions/c.json"}));
    QVERIFY(!library_->selection());
    QVERIFY(library_->canUndoDelete());
    library_->undoDelete();
    QTRY_COMPARE(titles(), QStringList({"Sessions/a.json", "Sessions/b.json", "Sessions/c.json"}));
    QVERIFY(!library_->canUndoDelete());
  }

  void aDeletionOfOneIsUndoneToo() {
    const QUrl a = write("Sessions/a.json", 3);
    reload();
    library_->select(a);
    library_->deleteSelection(visible());
    QVERIFY(library_->canUndoDelete());
    library_->undoDelete();
    QTRY_COMPARE(titles(), QStringList({"Sessions/a.json"}));
  }

  void undoReplacesNoSessionThatWasWrittenAgain() {
    const QUrl a = write("Sessions/a.json", 3);
    reload();
    library_->select(a);
    library_->deleteSelection(visible());
    write("Sessions/a.json", 5);
    library_->undoDelete();
    QTRY_COMPARE(titles(), QStringList({"Sessions/a.json"}));
    QCOMPARE(library_->sessions()[0]->summary.startedAt, Instant(std::chrono::hours(24 * 365 + 5)));
    QVERIFY(!library_->canUndoDelete());
  }

  void deletionOfSeveralEndsAtAFailure() {
    const QUrl a = write("Sessions/a.json", 3);
    reload();
    trashRefuses_ = "no trash";
    std::exception_ptr failed;
    QCOMPARE(library_->deleteSessions({a}, failed), QList<QUrl>());
    QVERIFY(failed);
    QVERIFY(QFile::exists(a.toLocalFile()));
    QVERIFY(!library_->canUndoDelete());
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
    const CaptionSession before = library_->store().read(a);
    library_->rename(a, " Biology ");
    QCOMPARE(titles(), QStringList({"Biology"}));
    reload();
    CaptionSession after = library_->store().read(a);
    QCOMPARE(after.title, "Biology");
    after.title = before.title;
    QVERIFY(after == before);
    library_->rename(a, "");
    QCOMPARE(titles(), QStringList({defaultSessionTitle()}));
    QVERIFY(QFile::remove(a.toLocalFile()));
    QVERIFY_EXCEPTION_THROWN(library_->rename(a, "C"), Failure);
    QVERIFY(!QFile::exists(a.toLocalFile()));
  }

  void deletingSelectsAVisibleNeighbour() {
    const QUrl a = write("Sessions/a.json", 3);
    write("Sessions/hidden.json", 2);
    const QUrl c = write("Sessions/c.json", 1);
    reload();
    library_->select(a);
    library_->deleteSelection({a, c});
    QCOMPARE(library_->selection().value_or(QUrl()), c);
  }

  void hiddenSelectionIsNotDeleted() {
    const QUrl a = write("Sessions/a.json", 1);
    reload();
    library_->select(a);
    QVERIFY(!library_->deleteSelection({}));
    QVERIFY(QFile::exists(a.toLocalFile()));
    QCOMPARE(library_->selection().value_or(QUrl()), a);
  }

  void fileThatCannotBeTrashedStaysListed() {
    const QUrl a = write("Sessions/a.json", 1);
    reload();
    library_->select(a);
    trashRefuses_ = "no trash";
    QVERIFY_EXCEPTION_THROWN(library_->deleteSelection(visible()), Failure);
    QCOMPARE(titles().size(), 1);
    QCOMPARE(library_->selection().value_or(QUrl()), a);
  }

  void deletingAnOpenedFileForgetsIt() {
    const QUrl elsewhere = write("elsewhere.json", 1);
    open(elsewhere);
    library_->deleteSelection(visible());
    QVERIFY(library_->openedFiles().isEmpty());
    reload();
    QVERIFY(!library_->error());
  }

  void outdatedListingDoesNotRestoreADeletedSession() {
    const QUrl a = write("Sessions/a.json", 1);
    reload();
    library_->select(a);
    QSignalSpy reloaded(library_.get(), &HistoryViewModel::reloaded);
    library_->reload();
    library_->deleteSelection(visible());
    QVERIFY(reloaded.wait());
    QVERIFY(library_->sessions().empty());
    QVERIFY(!library_->isReloading());
  }

  void listingIsDiscardedAfterDestruction() {
    write("Sessions/a.json", 1);
    library_->reload();
    library_.reset();
    QTRY_COMPARE(QThreadPool::globalInstance()->activeThreadCount(), 0);
    QCoreApplication::processEvents();
    QVERIFY(!library_);
  }
};

QTEST_GUILESS_MAIN(HistoryViewModelTest)
#include "history_view_model_test.moc"
