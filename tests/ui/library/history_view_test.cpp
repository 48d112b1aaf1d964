// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/history_view.h"

#include "language/localization.h"
#include "model/session_file/session_file.h"
#include "support/manual_clock.h"
#include "support/suite.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/transcript_view.h"
#include "ui/library/empty_state_view.h"
#include "ui/library/session_detail_view.h"

#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolButton>

using namespace velun;

class HistoryViewTest final : public test::Suite {
  Q_OBJECT

  std::unique_ptr<QTemporaryDir> folder_;
  test::ManualClock clock_;
  std::unique_ptr<AppSettings> settings_;
  std::unique_ptr<HistoryViewModel> library_;
  std::unique_ptr<HistoryView> view_;
  QStringList calls_;
  std::optional<LineRange> selected_;

  /// Writes a session that started `daysAgo` days ago.
  QUrl write(const QString& title, int daysAgo, const QString& text,
             const QString& translation = {}, const QString& language = "ko") {
    CaptionSession session;
    session.title = title;
    session.startedAt = clock_.now() - std::chrono::days(daysAgo);
    Line line;
    line.text = text;
    if (!translation.isEmpty()) line.translations[language] = translation;
    session.lines.push_back(line);
    return write(session);
  }

  QUrl write(const CaptionSession& session) {
    const QString path = folder_->filePath(session.title + ".json");
    QFile file(path);
    if (file.open(QFile::WriteOnly)) file.write(encodeSession(session));
    return QUrl::fromLocalFile(path);
  }

  void reload() {
    QSignalSpy reloaded(library_.get(), &HistoryViewModel::reloaded);
    library_->reload();
    QVERIFY(reloaded.wait());
  }

  QListView* list() const { return view_->findChild<QListView*>("sessions"); }
  QLineEdit* search() const { return view_->findChild<QLineEdit*>("search"); }
  SessionDetailView* detail() const { return view_->findChild<SessionDetailView*>(); }
  QString transcript() const { return detail()->transcript().textView().toPlainText(); }

  QStringList rows() const {
    QStringList texts;
    for (int row = 0; row < list()->model()->rowCount(); ++row) {
      texts.append(list()->model()->index(row, 0).data().toString());
    }
    return texts;
  }

  /// Chooses an entry of a row's context menu; returns the texts of the menu.
  QStringList choose(const QModelIndex& row, int entry) const {
    QStringList offered;
    QTimer::singleShot(0, qApp, [&offered, entry] {
      auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      QVERIFY(menu);
      for (const QAction* each : menu->actions()) offered.append(each->text());
      menu->setActiveAction(menu->actions().at(entry));
      QTest::keyClick(menu, Qt::Key_Return);
    });
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
    Q_EMIT list()->customContextMenuRequested(list()->visualRect(row).center());
    return offered;
  }

  QAction* action(const QString& text) const {
    for (QAction* each : view_->findChildren<QAction*>()) {
      if (each->text() == text) return each;
    }
    return nullptr;
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    Localization::shared().setLanguage(AppLanguage::english);
    folder_ = std::make_unique<QTemporaryDir>();
    settings_ = std::make_unique<AppSettings>();
    SessionStore store;
    store.directory = QUrl::fromLocalFile(folder_->path());
    library_ = std::make_unique<HistoryViewModel>(
        store, [](const QUrl& url) { QFile::remove(url.toLocalFile()); });
    calls_.clear();
    HistoryActions actions;
    actions.openFile = [this] {
      calls_.append("open");
    };
    actions.saveFile = [this](const CaptionSession& s) {
      calls_.append("save " + s.title);
    };
    actions.revealFile = [this](const QUrl& url) {
      calls_.append("reveal " + url.fileName());
    };
    actions.exportSession = [this](const CaptionSession& s, const std::optional<LineRange>& lines) {
      calls_.append("export " + s.title);
      selected_ = lines;
    };
    actions.deleteSelection = [this](const QList<QUrl>& visible) {
      library_->deleteSelection(visible);
    };
    view_ = std::make_unique<HistoryView>(*library_, *settings_, actions, clock_);
    view_->resize(960, 620);
    view_->show();
    // Checks the model on every change.
    auto* list = view_->findChild<QListView*>("sessions");
    new QAbstractItemModelTester(list->model(),
                                 QAbstractItemModelTester::FailureReportingMode::QtTest, list);
  }
  void cleanup() {
    view_.reset();
    library_.reset();
  }

  void showsAnEmptyState() {
    reload();
    EmptyStateView* empty = view_->findChild<EmptyStateView*>();
    QVERIFY(empty->isVisible());
    QCOMPARE(empty->text(), QString("No Saved Sessions"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(empty->text(), QString("저장된 세션이 없습니다"));
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
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(rows().first(), QString("오늘"));
    QCOMPARE(list()->model()->index(1, 0).data(SessionListModel::summaryRole).toString(),
             QString("1문장 · 번역 포함"));
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
    QTRY_COMPARE(view_->findChild<EmptyStateView*>()->text(), QString("No Results"));
    QVERIFY(view_->findChild<EmptyStateView*>()->isVisible());
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(view_->findChild<EmptyStateView*>()->text(), QString("검색 결과가 없습니다"));
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
    QTRY_VERIFY(view_->findChild<EmptyStateView*>()->isVisible());
    const QTemporaryDir elsewhere;
    const QUrl call = write("Call", 1, "The sea");
    const QString moved = elsewhere.filePath("call.json");
    QVERIFY(QFile::rename(call.toLocalFile(), moved));
    library_->open({QUrl::fromLocalFile(moved)});
    QTRY_VERIFY(search()->text().isEmpty());
    QVERIFY(!view_->findChild<EmptyStateView*>()->isVisible());
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
    QCOMPARE(choose(row, 0), QStringList({"Show in File Manager", "Export…", "Delete"}));
    QCOMPARE(library_->selection().value_or(QUrl()), call);
    choose(row, 1);
    QCOMPARE(calls_, QStringList({"reveal Call.json", "export Call"}));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(choose(row, 2), QStringList({"파일 관리자에서 보기", "내보내기…", "삭제"}));
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
};

QTEST_MAIN(HistoryViewTest)
#include "history_view_test.moc"
