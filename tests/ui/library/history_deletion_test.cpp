// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/history_view_model_suite.h"

using namespace velun;

/// Deletions of saved sessions, and their undoing.
class HistoryDeletionTest final : public test::HistoryViewModelSuite {
  Q_OBJECT

  bool undone() {
    std::exception_ptr failed;
    library_->undoDelete(failed);
    return !failed;
  }

 private Q_SLOTS:
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

  void anOpenedFileIsListedAgainAfterAnUndo() {
    const QUrl elsewhere = write("elsewhere.json", 1);
    open(elsewhere);
    library_->deleteSelection(visible());
    QVERIFY(undone());
    QTRY_COMPARE(titles(), QStringList({"elsewhere.json"}));
    QCOMPARE(library_->openedFiles(), QList<QUrl>({elsewhere}));
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
    QVERIFY(undone());
    QTRY_COMPARE(titles(), QStringList({"Sessions/a.json", "Sessions/b.json", "Sessions/c.json"}));
    QVERIFY(!library_->canUndoDelete());
  }

  void aDeletionOfOneIsUndoneToo() {
    const QUrl a = write("Sessions/a.json", 3);
    reload();
    library_->select(a);
    library_->deleteSelection(visible());
    QVERIFY(library_->canUndoDelete());
    QVERIFY(undone());
    QTRY_COMPARE(titles(), QStringList({"Sessions/a.json"}));
  }

  void undoReplacesNoSessionThatWasWrittenAgain() {
    const QUrl a = write("Sessions/a.json", 3);
    reload();
    library_->select(a);
    library_->deleteSelection(visible());
    write("Sessions/a.json", 5);
    QVERIFY(undone());
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
};

QTEST_GUILESS_MAIN(HistoryDeletionTest)
#include "history_deletion_test.moc"
