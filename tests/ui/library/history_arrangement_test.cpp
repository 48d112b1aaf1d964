// SPDX-License-Identifier: GPL-3.0-or-later
#include "history_view_suite.h"
#include "ui/library/arrangement_menu.h"

#include <QActionGroup>
#include <QDragEnterEvent>
#include <QMimeData>
#include <QToolButton>

using namespace velun;

/// Sorting and filtering the list, and dragging files into the view and out of it.
class HistoryArrangementTest final : public test::HistoryViewSuite {
  Q_OBJECT

  ArrangementMenu* menu() const { return view_->findChild<ArrangementMenu*>(); }

  /// The choice with this text in the menu or in one of its menus.
  QAction* choice(const QString& text) const {
    Q_EMIT menu()->aboutToShow();
    for (QMenu* each : menu()->findChildren<QMenu*>() + QList<QMenu*>({menu()})) {
      for (QAction* action : each->actions()) {
        if (action->text() == text) return action;
      }
    }
    return nullptr;
  }

  void choose(const QString& text) const {
    QAction* action = choice(text);
    QVERIFY2(action, qPrintable(text));
    action->trigger();
  }

  QToolButton* button() const {
    for (QToolButton* each : view_->findChildren<QToolButton*>()) {
      if (each->menu() == menu()) return each;
    }
    return nullptr;
  }

  /// Drops something from another program; whether the view takes it.
  bool drop(const QMimeData& data) const {
    const QPoint place = view_->rect().center();
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QApplication::sendEvent(view_.get(), &enter);
    if (!enter.isAccepted()) return false;
    QDropEvent event(place, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(view_.get(), &event);
    return event.isAccepted();
  }

  void writeTalks() {
    CaptionSession german;
    german.title = "Vortrag";
    german.startedAt = clock_.now() - std::chrono::days(1);
    Line line;
    line.text = "Der Fluss";
    line.sourceLanguage = "de_DE";
    line.input = AudioInput::microphone;
    german.lines = {line};
    write(german);
    write("Lecture", 0, "The river");
    write("Call", 40, "The sea");
    reload();
  }

 private Q_SLOTS:
  void oneOrderHolds() {
    QVERIFY(choice("Newest First")->isChecked());
    QVERIFY(choice("Newest First")->actionGroup()->isExclusive());
    choose("By Title");
    QVERIFY(choice("By Title")->isChecked());
    QVERIFY(!choice("Newest First")->isChecked());
  }

  void menusShowTheKeysOfCommands() {
    int keys = 0;
    for (const QAction* each : view_->actions()) {
      if (each->shortcut().isEmpty()) continue;
      QVERIFY(each->isShortcutVisibleInContextMenu());
      ++keys;
    }
    QVERIFY(keys > 5);
  }

  void sortsTheList() {
    writeTalks();
    choose("By Title");
    // Days do not stand together, so there are no sections.
    QCOMPARE(rows(), QStringList({"Call", "Lecture", "Vortrag"}));
    QVERIFY(choice("By Title")->isChecked());
    choose("Oldest First");
    QCOMPARE(rows().last(), QString("Lecture"));
    QCOMPARE(rows().size(), 6);
  }

  void filtersTheListAndSaysSo() {
    writeTalks();
    QCOMPARE(button()->accessibleName(), QString("Sort and Filter"));
    choose("German (Germany)");
    QCOMPARE(rows(), QStringList({"Yesterday", "Vortrag"}));
    QCOMPARE(button()->accessibleName(), QString("Sort and Filter: some sessions are left out"));
    choose("Computer Audio");
    QCOMPARE(emptyList()->text(), QString("No Results"));
    choose("Show All Sessions");
    QCOMPARE(rows().size(), 6);
    QVERIFY(!choice("Show All Sessions")->isEnabled());
  }

  void searchAndFilterWorkTogether() {
    writeTalks();
    choose("Last 30 Days");
    QTest::keyClicks(search(), "the");
    QTRY_COMPARE(rows(), QStringList({"Today", "Lecture"}));
  }

  void anOpenedFileIsShownDespiteTheFilter() {
    writeTalks();
    choose("Today");
    QCOMPARE(rows(), QStringList({"Today", "Lecture"}));
    library_->open({QUrl::fromLocalFile(folder_->filePath("Call.json"))});
    QTRY_VERIFY(rows().contains("Call"));
  }

  void theKeyboardReachesTheMenu() {
    writeTalks();
    QCOMPARE(button()->focusPolicy(), Qt::TabFocus);
    Localization::shared().setLanguage(AppLanguage::korean);
    QVERIFY(choice("최신순"));
    QCOMPARE(menu()->title(), QString("정렬 및 필터"));
  }

  void droppedFilesAreOpened() {
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile("/music/a talk.mp3"), QUrl::fromLocalFile("/b.json")});
    QVERIFY(drop(files));
    QCOMPARE(calls_, QStringList({"open a talk.mp3", "open b.json"}));
    QMimeData text;
    text.setText("a talk");
    QVERIFY(!drop(text));
  }

  void sessionsAreDraggedOutAsFiles() {
    writeTalks();
    QVERIFY(list()->dragEnabled());
    list()->selectAll();
    auto* model = list()->model();
    const std::unique_ptr<QMimeData> data(
        model->mimeData(list()->selectionModel()->selectedIndexes()));
    QStringList names;
    for (const QUrl& url : data->urls()) names.append(url.fileName());
    QCOMPARE(names, QStringList({"Lecture.json", "Vortrag.json", "Call.json"}));
    // A header is no file, and no other program may move one away.
    QVERIFY(!model->flags(model->index(0, 0)).testFlag(Qt::ItemIsDragEnabled));
    QCOMPARE(model->supportedDragActions(), Qt::DropActions(Qt::CopyAction));
  }
};

QTEST_MAIN(HistoryArrangementTest)
#include "history_arrangement_test.moc"
