// SPDX-License-Identifier: GPL-3.0-or-later
#include "history_view_suite.h"

#include <QClipboard>
#include <QComboBox>
#include <QScopeGuard>
#include <QToolButton>

using namespace velun;

/// What the window does at the user's commands.
class HistoryCommandsTest final : public test::HistoryViewSuite {
  Q_OBJECT

 private Q_SLOTS:
  void aSearchShowsTheSidebar() {
    write("A", 0, "One.");
    reload();
    action("Show/Hide Sidebar")->trigger();
    QTest::keyClicks(search(), "a");
    QVERIFY(view_->isSidebarVisible());
  }

  void transcriptCanBeCopied() {
    write("Lecture", 0, "The river", "강");
    reload();
    list()->setCurrentIndex(list()->model()->index(1, 0));
    for (QToolButton* each : detail()->findChildren<QToolButton*>()) {
      if (each->accessibleName() == "Copy All") each->click();
    }
    QCOMPARE(QGuiApplication::clipboard()->text(), QString("The river\n강"));
  }

  void commandsActOnTheSelection() {
    write("Lecture", 0, "a");
    reload();
    QVERIFY(!action("Delete")->isEnabled());
    QVERIFY(!action("Export")->isEnabled());
    list()->setCurrentIndex(list()->model()->index(1, 0));
    QVERIFY(action("Delete")->isEnabled());
    action("Export")->trigger();
    action("Save as File…")->trigger();
    action("Show in File Manager")->trigger();
    action("Open File…")->trigger();
    QCOMPARE(calls_,
             QStringList({"export Lecture", "save Lecture", "reveal Lecture.json", "open"}));
    QCOMPARE(action("Delete")->toolTip(), QString("Delete (Ctrl+Backspace) · Moves to Trash"));
    action("Delete")->trigger();
    QVERIFY(library_->sessions().empty());
    QVERIFY(!detail()->isVisible());
  }

  void exportKnowsTheSelectedLines() {
    CaptionSession session;
    session.title = "Talk";
    for (const QString text : {"one", "two\nparts", "three", "four"}) {
      Line line;
      line.text = text;
      line.translations["ko"] = "번역";
      session.lines.push_back(line);
    }
    write(session);
    reload();
    list()->setCurrentIndex(list()->model()->index(1, 0));
    action("Export")->trigger();
    QVERIFY(!selected_);
    auto& text = detail()->transcript().textView();
    QTextCursor cursor = text.document()->find("wo");
    cursor.setPosition(text.document()->find("hree").selectionEnd(), QTextCursor::KeepAnchor);
    text.setTextCursor(cursor);
    action("Export")->trigger();
    QCOMPARE(selected_, (std::optional(LineRange{1, 2})));
  }

  void contextMenuActsOnTheSessionUnderThePointer() {
    write("Lecture", 0, "a");
    const QUrl call = write("Call", 1, "b");
    reload();
    list()->setCurrentIndex(list()->model()->index(1, 0));
    const QModelIndex row = list()->model()->index(3, 0);
    QCOMPARE(choose(row, 0),
             QStringList({"Show in File Manager", "Export…", "Delete", "Rename…", "Statistics"}));
    QCOMPARE(library_->selection().value_or(QUrl()), call);
    choose(row, 1);
    QCOMPARE(calls_, QStringList({"reveal Call.json", "export Call"}));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(choose(row, 2),
             QStringList({"파일 관리자에서 보기", "내보내기…", "삭제", "이름 변경…", "통계"}));
    QCOMPARE(library_->sessions().size(), std::size_t{1});
    QVERIFY(!QFile::exists(call.toLocalFile()));
  }

  void selectionHiddenByTheSearchIsNotDeleted() {
    write("Lecture", 0, "river");
    write("Call", 1, "sea");
    reload();
    list()->setCurrentIndex(list()->model()->index(1, 0));
    search()->setText("sea");
    QTRY_COMPARE(rows(), QStringList({"Yesterday", "Call"}));
    QVERIFY(!action("Delete")->isEnabled());
    QCOMPARE(library_->sessions().size(), std::size_t{2});
  }

  void deletingASearchWordDeletesNoSession() {
    write("Lecture", 0, "river bank");
    reload();
    list()->setCurrentIndex(list()->model()->index(1, 0));
    view_->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(view_.get()));
    search()->setFocus();
    search()->setText("river bank");
    QTest::keyClick(search(), Qt::Key_Backspace, Qt::ControlModifier);
    QCOMPARE(search()->text(), QString("river "));
    QCOMPARE(library_->sessions().size(), std::size_t{1});
    list()->setFocus();
    QTest::keyClick(list(), Qt::Key_Backspace, Qt::ControlModifier);
    QVERIFY(library_->sessions().empty());
  }

  void sidebarCanBeHiddenAndShown() {
    QVERIFY(view_->isSidebarVisible());
    action("Show/Hide Sidebar")->trigger();
    QVERIFY(!view_->isSidebarVisible());
    action("Show/Hide Sidebar")->trigger();
    QVERIFY(view_->isSidebarVisible());
  }

  void everyCommandIsAlsoKorean() {
    Localization::shared().setLanguage(AppLanguage::korean);
    for (const char* text : {"삭제", "내보내기", "파일 열기…", "파일로 저장…",
                             "파일 관리자에서 보기", "새로고침", "사이드바 보기/숨기기"}) {
      QVERIFY2(action(QString::fromUtf8(text)), text);
    }
    const auto buttons = view_->findChildren<QToolButton*>();
    QVERIFY(std::any_of(buttons.begin(), buttons.end(), [](const QToolButton* button) {
      return button->accessibleName() == QString("더 보기");
    }));
    const auto choosers = detail()->findChildren<QComboBox*>();
    QCOMPARE(choosers[0]->accessibleName(), QString("표시 내용"));
    QCOMPARE(choosers[1]->accessibleName(), QString("번역 언어"));
    QCOMPARE(choosers[1]->itemText(0), QString("모든 번역 언어"));
    QCOMPARE(search()->placeholderText(), QString("기록 검색"));
    QCOMPARE(action(QString::fromUtf8("삭제"))->toolTip(),
             QString("삭제 (Ctrl+Backspace) · 휴지통으로 이동"));
  }
};

QTEST_MAIN(HistoryCommandsTest)
#include "history_commands_test.moc"
