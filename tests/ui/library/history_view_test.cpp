// SPDX-License-Identifier: GPL-3.0-or-later
#include "history_view_suite.h"
#include "ui/common/find_bar.h"
#include "ui/library/session_list_model.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScopeGuard>
#include <QScrollBar>
#include <QToolButton>

using namespace velun;

/// What the window shows: the list, the search and the transcript.
class HistoryViewTest final : public test::HistoryViewSuite {
  Q_OBJECT

 private Q_SLOTS:
  void showsAnEmptyState() {
    reload();
    EmptyStateView* empty = emptyList();
    EmptyStateView* unselected = view_->findChild<EmptyStateView*>("nothingSelected");
    QVERIFY(empty->isVisible());
    QCOMPARE(empty->text(), QString("No Saved Sessions"));
    QVERIFY(unselected->isVisible());
    QVERIFY(unselected->hint().startsWith("Sessions that you save appear here."));
    unselected->findChild<QToolButton*>()->click();
    QCOMPARE(calls_, QStringList{"open"});
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(empty->text(), QString("저장된 세션이 없습니다"));
    QVERIFY(unselected->hint().startsWith("저장한 세션이 여기에 표시됩니다."));
  }

  void asksForASelection() {
    write("A", 0, "One.");
    reload();
    EmptyStateView* unselected = view_->findChild<EmptyStateView*>("nothingSelected");
    QVERIFY(unselected->isVisible());
    QCOMPARE(unselected->hint(), QString("Select a session to read it."));
    QVERIFY(!unselected->findChild<QToolButton*>()->isVisible());
    library_->select(library_->sessions().front()->url);
    QVERIFY(!unselected->isVisible());
  }

  void groupsSessionsByDay() {
    write("Now", 0, "a", "b");
    write("Before", 1, "a");
    write("Week", 6, "a");
    write("Month", 7, "a");
    write("Winter", 30, "a");
    reload();
    QCOMPARE(rows(), QStringList({"Today", "Now", "Yesterday", "Before", "Previous 7 Days", "Week",
                                  "Previous 30 Days", "Month", "January 2025", "Winter"}));
    const QModelIndex now = list()->model()->index(1, 0);
    QCOMPARE(now.data(SessionListModel::summaryRole).toString(),
             QString("1 sentence · with translation"));
    QCOMPARE(list()->model()->index(3, 0).data(SessionListModel::summaryRole).toString(),
             QString("1 sentence"));
    QCOMPARE(now.data(SessionListModel::previewRole).toString(), QString("a"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(rows().first(), QString("오늘"));
    QCOMPARE(list()->model()->index(1, 0).data(SessionListModel::summaryRole).toString(),
             QString("1문장 · 번역 포함"));
  }

  void aRowTellsTheTimeAndTheLength_data() {
    QTest::addColumn<int>("seconds");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("korean");
    QTest::newRow("seconds") << 42 << "9:05 AM · 42 s"
                             << "오전 9:05 · 42초";
    QTest::newRow("minutes") << 160 << "9:05 AM · 3 min"
                             << "오전 9:05 · 3분";
    QTest::newRow("hours") << 7500 << "9:05 AM · 2 h 5 min"
                           << "오전 9:05 · 2시간 5분";
    QTest::newRow("a clock that was set back") << -5 << "9:05 AM · 0 s"
                                               << "오전 9:05 · 0초";
  }
  void aRowTellsTheTimeAndTheLength() {
    QFETCH(int, seconds);
    SessionSummary session;
    session.startedAt = test::utc(2025, 3, 1, 9, 5, 0);
    QCOMPARE(sessionTimes(session), QString("9:05 AM"));
    session.endedAt = session.startedAt + std::chrono::seconds(seconds);
    QTEST(sessionTimes(session), "english");
    Localization::shared().setLanguage(AppLanguage::korean);
    QTEST(sessionTimes(session), "korean");
  }

  void sectionsChangeOnANewDay() {
    write("Now", 0, "a");
    reload();
    QCOMPARE(rows().first(), QString("Today"));
    clock_.advance(std::chrono::hours(25));
    QCOMPARE(rows().first(), QString("Yesterday"));
  }

  void searchShowsOnlyMatches() {
    write("Lecture", 0, "The river", "강");
    write("Call", 1, "The sea");
    reload();
    search()->setText("RIVER");
    QTRY_COMPARE(rows(), QStringList({"Today", "Lecture"}));
    search()->setText("nowhere");
    QTRY_COMPARE(emptyList()->text(), QString("No Results"));
    QVERIFY(emptyList()->isVisible());
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(emptyList()->text(), QString("검색 결과가 없습니다"));
    Localization::shared().setLanguage(AppLanguage::english);
    search()->setText("강");
    QTRY_COMPARE(rows(), QStringList({"Today", "Lecture"}));
    search()->clear();
    QTRY_COMPARE(rows().size(), 4);
  }

  void openedFileIsShownDuringASearch() {
    write("Lecture", 0, "The river");
    reload();
    search()->setText("nowhere");
    QTRY_VERIFY(emptyList()->isVisible());
    const QTemporaryDir elsewhere;
    const QUrl call = write("Call", 1, "The sea");
    const QString moved = elsewhere.filePath("call.json");
    QVERIFY(QFile::rename(call.toLocalFile(), moved));
    library_->open({QUrl::fromLocalFile(moved)});
    QTRY_VERIFY(search()->text().isEmpty());
    QVERIFY(!emptyList()->isVisible());
    QTRY_COMPARE(rows(), QStringList({"Today", "Lecture", "Yesterday", "Call"}));
    QCOMPARE(list()->currentIndex().row(), 3);
    QVERIFY(transcript().contains("The sea"));
  }

  void selectedSessionHighlightsMatches() {
    const QUrl lecture = write("Lecture", 0, "The river and the River", "강");
    reload();
    list()->setCurrentIndex(list()->model()->index(1, 0));
    QCOMPARE(library_->selection().value_or(QUrl()), lecture);
    QVERIFY(transcript().contains("The river and the River"));
    QVERIFY(transcript().contains("강"));
    search()->setText("river");
    QTRY_COMPARE(detail()->transcript().textView().extraSelections().size(), 2);
    search()->clear();
    QTRY_COMPARE(detail()->transcript().textView().extraSelections().size(), 0);
  }

  void screenReadersCanSelectARow() {
    write("Lecture", 0, "river");
    write("Call", 1, "sea");
    reload();
    list()->selectionModel()->select(list()->model()->index(3, 0),
                                     QItemSelectionModel::ClearAndSelect);
    QVERIFY(library_->selectedSession());
    QCOMPARE(library_->selectedSession()->session.title, QString("Call"));
    QVERIFY(transcript().contains("sea"));
    list()->clearSelection();
    QVERIFY(!library_->selectedSession());
    QVERIFY(!detail()->isVisible());
    QVERIFY(!action("Delete")->isEnabled());
  }

  void searchFieldHasTheInitialFocus() {
    QCOMPARE(view_->focusWidget(), search());
    QWidget* next = search()->nextInFocusChain();
    while (next->focusPolicy() == Qt::NoFocus) next = next->nextInFocusChain();
    QCOMPARE(next, list());
  }

  void contentAndLanguageCanBeChosen() {
    write("Lecture", 0, "The river", "강");
    reload();
    list()->setCurrentIndex(list()->model()->index(1, 0));
    const auto choosers = detail()->findChildren<QComboBox*>();
    QCOMPARE(choosers[0]->accessibleName(), QString("Show"));
    QCOMPARE(choosers[1]->accessibleName(), QString("Translation Language"));
    QCOMPARE(choosers[1]->itemText(0), QString("All Translation Languages"));
    QCOMPARE(choosers[1]->itemText(1), QString("Korean"));
    Q_EMIT choosers[0]->activated(1);
    QVERIFY(!transcript().contains("강"));
    Q_EMIT choosers[0]->activated(2);
    QVERIFY(!transcript().contains("The river"));
    Q_EMIT choosers[1]->activated(1);
    QCOMPARE(detail()->language().value_or(QString()), QString("ko"));
  }

  void longLanguageIdentifierDoesNotWidenTheWindow() {
    write("Lecture", 0, "The river", "강", QString(5000, u'x'));
    reload();
    list()->setCurrentIndex(list()->model()->index(1, 0));
    const QComboBox* languages = detail()->findChildren<QComboBox*>()[1];
    QCOMPARE(languages->itemText(1), QString(59, u'x') + "…");
    QCOMPARE(languages->itemData(1).toString().size(), 5000);
    QVERIFY(languages->sizeHint().width() < 800);
  }

  void transcriptFollowsTheDesktopColours() {
    write("Lecture", 0, "The river");
    reload();
    list()->setCurrentIndex(list()->model()->index(1, 0));
    const QTextDocument& document = *detail()->transcript().textView().document();
    const auto lightness = [&document] {
      return document.find("The river").charFormat().foreground().color().lightness();
    };
    QVERIFY(lightness() < 60);
    const auto restore = qScopeGuard([] { QApplication::setPalette(QPalette()); });
    QApplication::setPalette(QPalette(QColor(45, 45, 48), QColor(37, 37, 40)));
    QTRY_VERIFY(lightness() > 200);
  }

  void bannerCountsUnreadableFiles() {
    QFile bad(folder_->filePath("bad.json"));
    QVERIFY(bad.open(QFile::WriteOnly));
    bad.close();
    reload();
    const auto labels = view_->findChildren<QLabel*>();
    QVERIFY(std::any_of(labels.begin(), labels.end(), [](const QLabel* label) {
      return label->isVisible() && label->text().startsWith("Couldn’t read 1 session.");
    }));
  }

  void aSessionIsOpenedAtItsBeginning() {
    const QString text = QString("A sentence of the talk. ").repeated(400);
    const QUrl lecture = write("Lecture", 0, text);
    const QUrl call = write("Call", 1, text);
    reload();
    library_->select(lecture);
    QScrollBar* bar = detail()->transcript().textView().verticalScrollBar();
    QVERIFY(bar->maximum() > 0);
    bar->setValue(bar->maximum());
    library_->select(call);
    QCOMPARE(bar->value(), 0);
    bar->setValue(50);
    reload();
    QCOMPARE(bar->value(), 50);
  }

  void matchesOfTheFindBarAreSteppedThroughWhileItHasTheKeyboard() {
    const QUrl lecture = write("Lecture", 0, "sea and river, river and sea");
    reload();
    search()->setText("river");
    QTRY_COMPARE(rows(), QStringList({"Today", "Lecture"}));
    library_->select(lecture);
    QVERIFY(detail()->openFindBar());
    FindBar& bar = *detail()->transcript().findBar();
    auto* field = bar.findChild<QLineEdit*>();
    field->setText("sea");
    field->setFocus();
    const QTextEdit& text = detail()->transcript().textView();
    QList<int> found;
    for (int i = 0; i < 2; ++i) {
      for (QAction* each : view_->actions()) {
        if (each->shortcut() == QKeySequence(Qt::Key_F3)) each->trigger();
      }
      QCOMPARE(text.textCursor().selectedText(), QString("sea"));
      found << text.textCursor().selectionStart();
    }
    QVERIFY(found[0] != found[1]);
  }

  void matchesAreSteppedThroughAcrossSessions() {
    const QUrl lecture = write("Lecture", 0, "sea and river, river and sea");
    const QUrl call = write("Call", 1, "a river");
    reload();
    search()->setText("river");
    QTRY_COMPARE(rows(), QStringList({"Today", "Lecture", "Yesterday", "Call"}));
    const auto press = [this](Qt::KeyboardModifiers modifiers) {
      for (QAction* each : view_->actions()) {
        if (each->shortcut() == QKeySequence(modifiers | Qt::Key_F3)) each->trigger();
      }
      const QTextEdit& text = detail()->transcript().textView();
      return text.textCursor().position() - text.toPlainText().indexOf("river");
    };
    QCOMPARE(press({}), 0);
    QCOMPARE(library_->selection().value_or(QUrl()), lecture);
    QCOMPARE(press({}), 7);
    QCOMPARE(press({}), 0);
    QCOMPARE(library_->selection().value_or(QUrl()), call);
    QCOMPARE(press({}), 0);
    QCOMPARE(library_->selection().value_or(QUrl()), lecture);
    press(Qt::ShiftModifier);
    QCOMPARE(library_->selection().value_or(QUrl()), call);
    QCOMPARE(press(Qt::ShiftModifier), 7);
    QCOMPARE(library_->selection().value_or(QUrl()), lecture);
  }
};

QTEST_MAIN(HistoryViewTest)
#include "history_view_test.moc"
