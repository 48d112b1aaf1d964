// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/history_view.h"

#include "language/localization.h"
#include "model/session_work.h"
#include "ui/caption/transcript_view.h"
#include "ui/common/accessible_role.h"
#include "ui/common/editing_keys.h"
#include "ui/common/menu_closing.h"
#include "ui/common/notice_label.h"
#include "ui/common/symbol.h"
#include "ui/library/empty_state_view.h"
#include "ui/library/session_detail_view.h"
#include "ui/library/session_row_delegate.h"
#include "ui/library/session_sections.h"

#include <algorithm>
#include <QAction>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QSplitter>
#include <QStackedWidget>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace velun {

namespace {

constexpr int kSidebarWidth = 290;
/// The width in average letters, which counts with a large font.
constexpr int kSidebarLetters = 26;
constexpr int kMinSidebarWidth = 200;
/// Beside it, the button of the sidebar stands above the sidebar too.
constexpr int kSearchLetters = kSidebarLetters - 4;
/// At the size that the symbols are drawn for, their lines are thin. They grow with a large font.
constexpr int kIconSide = 20;
constexpr auto kDayCheckInterval = std::chrono::minutes(1);
/// Qt's object name for the action of a field's clear button.
const auto kClearAction = QStringLiteral("_q_qlineeditclearaction");

/// Sets an action's text and tool tip; the tool tip is the text without `help`.
void label(QAction* action, const QString& text, const QString& help = QString()) {
  action->setText(text);
  action->setToolTip(help.isEmpty() ? text : help);
}

CaptionSession combined(const SavedSessions& sessions) {
  std::vector<CaptionSession> parts;
  for (const auto& saved : sessions) parts.push_back(saved->session);
  return velun::combined(std::move(parts));
}

}  // namespace

HistoryView::HistoryView(HistoryViewModel& library, AppSettings& settings, HistoryActions actions,
                         Clock& clock, QWidget* parent)
    : QWidget(parent),
      library_(library),
      settings_(settings),
      actions_(std::move(actions)),
      clock_(clock) {
  setAcceptDrops(true);
  makeActions();
  makeToolBar();
  makeBanner();
  makeSearchField();
  makePanes();
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(toolBar_);
  column->addWidget(banner_);
  column->addWidget(splitter_, 1);
  followLibrary();
  translate();
}

HistoryView::~HistoryView() = default;

void HistoryView::makeActions() {
  const auto action = [this](const QString& symbol, const QKeySequence& key, auto run) {
    auto* made = new QAction(this);
    made->setObjectName(symbol);
    if (!symbol.isEmpty()) made->setIcon(symbolIcon(symbol));
    made->setShortcut(key);
    made->setShortcutContext(Qt::WindowShortcut);
    connect(made, &QAction::triggered, this, run);
    addAction(made);
    return made;
  };
  delete_ = action(QStringLiteral("trash"), QKeySequence(Qt::CTRL | Qt::Key_Backspace),
                   [this] { deleteSelected(); });
  export_ = action(QStringLiteral("square.and.arrow.up"), {}, [this] { exportSelected(); });
  openFile_ = action({}, {}, [this] { actions_.openFile(); });
  saveFile_ = action({}, {}, [this] {
    if (const auto selected = library_.selectedSession()) actions_.saveFile(selected->session);
  });
  reveal_ = action({}, {}, [this] { revealSelected(); });
  rename_ = action({}, QKeySequence(Qt::Key_F2), [this] { renameSelected(); });
  statistics_ = action({}, {}, [this] { showStatistics(); });
  combine_ = action({}, {}, [this] { combineSelected(); });
  undo_ = action({}, QKeySequence::Undo, [this] { actions_.undoDelete(); });
  action({}, QKeySequence::FindNext, [this] { stepToMatch(true); });
  action({}, QKeySequence::FindPrevious, [this] { stepToMatch(false); });
  refresh_ = action({}, QKeySequence(Qt::Key_F5), [this] { library_.reload(); });
  sidebar_ = action(QStringLiteral("sidebar.left"), QKeySequence(Qt::Key_F9),
                    [this] { setSidebarVisible(!isSidebarVisible()); });
  find_ = action({}, QKeySequence::Find, [this] { detail_->transcript().openFindBar(); });
}

void HistoryView::makeToolBar() {
  more_ = new QToolButton(this);
  moreMenu_ = new QMenu(more_);
  closeWhenChosen(*moreMenu_);
  moreMenu_->addActions(
      {openFile_, saveFile_, reveal_, rename_, combine_, statistics_, undo_, refresh_});
  more_->setIcon(symbolIcon(QStringLiteral("ellipsis.circle")));
  setOpensMenu(*more_);
  more_->setMenu(moreMenu_);
  more_->setPopupMode(QToolButton::InstantPopup);
  more_->setFocusPolicy(Qt::TabFocus);
  toolBar_ = new QToolBar(this);
  toolBar_->setMovable(false);
  const int side = std::max(kIconSide, fontMetrics().height());
  toolBar_->setIconSize(QSize(side, side));
  toolBar_->addAction(sidebar_);
  auto* space = new QWidget(toolBar_);
  space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  toolBar_->addWidget(space);
  toolBar_->addAction(delete_);
  toolBar_->addAction(export_);
  toolBar_->addWidget(more_);
  for (QAction* each : {sidebar_, delete_, export_}) {
    toolBar_->widgetForAction(each)->setFocusPolicy(Qt::TabFocus);
  }
}

void HistoryView::makeBanner() {
  banner_ = new NoticeLabel(this);
  banner_->setTextFormat(Qt::PlainText);
  banner_->setWordWrap(true);
  banner_->setContentsMargins(14, 8, 14, 8);
  banner_->setAutoFillBackground(true);
  banner_->setBackgroundRole(QPalette::ToolTipBase);
  banner_->setForegroundRole(QPalette::ToolTipText);
  banner_->setTextInteractionFlags(Qt::TextSelectableByMouse);
}

void HistoryView::makePanes() {
  splitter_ = new QSplitter(this);
  splitter_->addWidget(makeSidebar());
  // Created after the sidebar: the Tab key follows the order of creation.
  splitter_->addWidget(makeDetail());
  splitter_->setStretchFactor(1, 1);
  const int sidebarWidth =
      std::max(kSidebarWidth, kSidebarLetters * fontMetrics().averageCharWidth());
  splitter_->setSizes({sidebarWidth, 2 * sidebarWidth});
  splitter_->setChildrenCollapsible(false);
}

QWidget* HistoryView::makeDetail() {
  auto* pane = new QWidget(splitter_);
  // The background for reading; the sidebar has that of the window.
  pane->setBackgroundRole(QPalette::Base);
  pane->setAutoFillBackground(true);
  detail_ = new SessionDetailView(settings_, clock_, pane);
  nothingSelected_ = new EmptyStateView(pane);
  nothingSelected_->setObjectName(QStringLiteral("nothingSelected"));
  auto* column = new QVBoxLayout(pane);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(detail_);
  column->addWidget(nothingSelected_);
  return pane;
}

QWidget* HistoryView::makeSidebar() {
  auto* sidebar = new QWidget(splitter_);
  sidebar->setMinimumWidth(kMinSidebarWidth);
  makeList(sidebar);
  empty_ = new EmptyStateView(sidebar);
  empty_->setObjectName(QStringLiteral("emptyList"));
  listOrEmpty_ = new QStackedWidget(sidebar);
  listOrEmpty_->addWidget(list_);
  listOrEmpty_->addWidget(empty_);
  auto* column = new QVBoxLayout(sidebar);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(listOrEmpty_, 1);
  return sidebar;
}

/// Made just before the sidebar: the Tab key goes from it to the sidebar.
void HistoryView::makeSearchField() {
  searchField_ = new QLineEdit(this);
  toolBar_->insertWidget(toolBar_->actions().at(1), searchField_);
  searchField_->setFixedWidth(
      std::max(kSidebarWidth - 2 * kIconSide, kSearchLetters * fontMetrics().averageCharWidth()));
  searchField_->setObjectName(QStringLiteral("search"));
  searchField_->setClearButtonEnabled(true);
  keepEditingKeys(*searchField_);
  searchSymbol_ = searchField_->addAction(symbolIcon(QStringLiteral("magnifyingglass")),
                                          QLineEdit::LeadingPosition);
  for (auto* button : searchField_->findChildren<QToolButton*>()) {
    // Decorative, but Qt exposes it to screen readers as a button.
    if (button->defaultAction() == searchSymbol_) hideFromAccessibility(*button);
  }
  auto* toList = new QAction(searchField_);
  toList->setShortcut(Qt::Key_Down);
  toList->setShortcutContext(Qt::WidgetShortcut);
  connect(toList, &QAction::triggered, this, [this] { list_->setFocus(Qt::ShortcutFocusReason); });
  QWidget* field = searchField_;
  field->addAction(toList);
}

void HistoryView::makeList(QWidget* sidebar) {
  list_ = new QListView(sidebar);
  list_->setObjectName(QStringLiteral("sessions"));
  list_->setModel(&rows_);
  list_->setItemDelegate(new SessionRowDelegate(list_));
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setFrameShape(QFrame::NoFrame);
  list_->viewport()->setBackgroundRole(QPalette::Window);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  list_->setContextMenuPolicy(Qt::CustomContextMenu);
  auto* deleteKey = new QAction(list_);
  deleteKey->setShortcut(QKeySequence::Delete);
  deleteKey->setShortcutContext(Qt::WidgetShortcut);
  connect(deleteKey, &QAction::triggered, this, &HistoryView::deleteSelected);
  list_->addAction(deleteKey);
  // Not currentChanged: screen readers select a row without making it the current one.
  connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
    if (isPresenting_) return;
    const QModelIndexList rows = list_->selectionModel()->selectedIndexes();
    // Of several, the one that was chosen last is shown.
    const QModelIndex current = list_->currentIndex();
    const QModelIndex shown = rows.contains(current) || rows.isEmpty() ? current : rows.constLast();
    const auto session = rows.isEmpty() ? nullptr : rows_.sessionAt(shown);
    library_.select(session ? std::optional(session->url) : std::nullopt);
    enableActions();
  });
  connect(list_, &QWidget::customContextMenuRequested, this, &HistoryView::showContextMenu);
}

void HistoryView::followLibrary() {
  connect(&library_, &HistoryViewModel::sessionsChanged, this, [this] {
    search_.setSessions(library_.sessions());
    presentSessions();
  });
  connect(&library_, &HistoryViewModel::selectionChanged, this, &HistoryView::presentSelection);
  connect(&library_, &HistoryViewModel::errorChanged, this, &HistoryView::presentError);
  connect(&library_, &HistoryViewModel::reloaded, this, &HistoryView::presentSessions);
  // The search may exclude the opened files.
  connect(&library_, &HistoryViewModel::filesOpened, this, [this](int count) {
    if (count > 0) searchField_->clear();
  });
  connect(&search_, &SessionSearch::ready, this, &HistoryView::presentSessions);
  connect(searchField_, &QLineEdit::textChanged, this, &HistoryView::presentSessions);
  // What was found is shown there.
  connect(searchField_, &QLineEdit::textEdited, this, [this] { setSidebarVisible(true); });
  connect(&Localization::shared(), &Localization::languageChanged, this, &HistoryView::translate);
  search_.setSessions(library_.sessions());
}

bool HistoryView::isSidebarVisible() const {
  return !splitter_->widget(0)->isHidden();
}

void HistoryView::setSidebarVisible(bool visible) {
  splitter_->widget(0)->setVisible(visible);
}

void HistoryView::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  if (!window()->focusWidget()) searchField_->setFocus();
  presentSessions();
  checkDayEveryMinute();
}

void HistoryView::hideEvent(QHideEvent* event) {
  QWidget::hideEvent(event);
  dayCheck_.reset();
  search_.forget();
}

void HistoryView::dragEnterEvent(QDragEnterEvent* event) {
  // Not the window's own rows, which are files too.
  if (event->mimeData()->hasUrls() && !event->source()) event->acceptProposedAction();
}

void HistoryView::dropEvent(QDropEvent* event) {
  event->acceptProposedAction();
  actions_.openFiles(event->mimeData()->urls());
}

void HistoryView::translate() {
  label(delete_, L("Delete", "삭제"),
        L("Delete (%1) · Moves to Trash", "삭제 (%1) · 휴지통으로 이동")
            .arg(delete_->shortcut().toString(QKeySequence::NativeText)));
  label(export_, L("Export", "내보내기"));
  label(openFile_, L("Open File…", "파일 열기…"));
  label(saveFile_, L("Save as File…", "파일로 저장…"));
  label(reveal_, L("Show in File Manager", "파일 관리자에서 보기"));
  label(rename_, L("Rename…", "이름 변경…"));
  label(statistics_, L("Statistics", "통계"));
  label(combine_, L("Combine Sessions", "세션 합치기"));
  label(undo_, L("Undo Delete", "삭제 취소"));
  label(refresh_, L("Refresh", "새로고침"));
  label(sidebar_, L("Show/Hide Sidebar", "사이드바 보기/숨기기"));
  label(find_, L("Find in Transcript", "자막에서 찾기"));
  more_->setText(L("More", "더 보기"));
  more_->setToolTip(more_->text());
  more_->setAccessibleName(more_->text());
  toolBar_->setAccessibleName(L("Saved session commands", "저장 기록 명령"));
  searchField_->setPlaceholderText(L("Search Sessions", "기록 검색"));
  searchField_->setAccessibleName(searchField_->placeholderText());
  searchField_->setToolTip(searchField_->placeholderText());
  label(searchSymbol_, searchField_->placeholderText());
  if (auto* clear = searchField_->findChild<QAction*>(kClearAction)) {
    label(clear, L("Clear Search", "검색어 지우기"));
  }
  list_->setAccessibleName(L("Saved Sessions", "저장 기록"));
  presentSessions();
  presentError();
}

void HistoryView::presentSessions() {
  const QString text = searchField_->text();
  const std::optional<SavedSessions> shown = search_.matches(text);
  if (!shown) return;  // The search is not ready; keep the list as it is.
  {
    const QScopedValueRollback presenting(isPresenting_, true);
    shownDay_ = localDay(clock_.now());
    rows_.show(*shown, shownDay_);
  }
  const bool hasNoSessions = library_.sessions().empty();
  // Screen readers announce the empty state when it appears, so show it only after the listing.
  const bool isEmpty =
      shown->empty() && !(hasNoSessions && (library_.isReloading() || !isVisible()));
  if (isEmpty && hasNoSessions) {
    empty_->show(QStringLiteral("text.bubble"), L("No Saved Sessions", "저장된 세션이 없습니다"));
  } else if (isEmpty) {
    empty_->show(QStringLiteral("magnifyingglass"), L("No Results", "검색 결과가 없습니다"));
  }
  listOrEmpty_->setCurrentWidget(isEmpty ? static_cast<QWidget*>(empty_) : list_);
  presentSelection();
}

void HistoryView::presentSelection() {
  const auto selected = library_.selectedSession();
  const QScopedValueRollback presenting(isPresenting_, true);
  const QModelIndex index = selected ? rows_.indexOf(selected->url) : QModelIndex();
  if (index.isValid()) {
    // It may be one of several.
    const QModelIndexList rows = list_->selectionModel()->selectedIndexes();
    if (rows.size() < 2 || !rows.contains(index)) list_->setCurrentIndex(index);
    list_->scrollTo(index);
  } else {
    list_->setCurrentIndex({});
    list_->clearSelection();
  }
  detail_->show(selected);
  presentNothingSelected();
  detail_->highlight(searchField_->text());
  for (QAction* each : {export_, saveFile_, reveal_, find_, rename_, statistics_}) {
    each->setEnabled(selected != nullptr);
  }
  delete_->setEnabled(index.isValid());
  enableActions();
}

void HistoryView::enableActions() {
  combine_->setEnabled(list_->selectionModel()->selectedIndexes().size() > 1);
  undo_->setEnabled(library_.canUndoDelete());
}

SavedSessions HistoryView::selectedSessions() const {
  QModelIndexList rows = list_->selectionModel()->selectedIndexes();
  std::sort(rows.begin(), rows.end());
  SavedSessions sessions;
  for (const QModelIndex& row : rows) {
    if (auto session = rows_.sessionAt(row)) sessions.push_back(std::move(session));
  }
  return sessions;
}

void HistoryView::presentNothingSelected() {
  nothingSelected_->setVisible(library_.selectedSession() == nullptr);
  nothingSelected_->show(library_.sessions().empty() ? QString() : QStringLiteral("text.bubble"),
                         {});
  if (library_.sessions().empty()) {
    nothingSelected_->setHint(
        L("Sessions that you save appear here.\nSave captions in the caption window, or choose in "
          "Settings that every session is saved.",
          "저장한 세션이 여기에 표시됩니다.\n자막 창에서 저장하거나, 설정에서 모든 세션을 "
          "저장하도록 "
          "선택하십시오."),
        openFile_);
  } else {
    nothingSelected_->setHint(L("Select a session to read it.", "읽을 세션을 선택하십시오."));
  }
}

void HistoryView::presentError() {
  banner_->setNotice(library_.error().value_or(QString()));
}

void HistoryView::checkDayEveryMinute() {
  // A single timer until midnight would stop during suspend and miss changes of the system clock.
  dayCheck_ = clock_.callAfter(kDayCheckInterval, [this] {
    if (localDay(clock_.now()) != shownDay_) presentSessions();
    checkDayEveryMinute();
  });
}

void HistoryView::showContextMenu(const QPoint& position) {
  const auto session = rows_.sessionAt(list_->indexAt(position));
  if (!session) return;
  if (!list_->selectionModel()->isSelected(list_->indexAt(position))) library_.select(session->url);
  QMenu menu(this);
  menu.addAction(L("Show in File Manager", "파일 관리자에서 보기"), this,
                 &HistoryView::revealSelected);
  menu.addAction(L("Export…", "내보내기…"), this, &HistoryView::exportSelected);
  menu.addAction(L("Delete", "삭제"), this, &HistoryView::deleteSelected);
  menu.addAction(rename_);
  if (combine_->isEnabled()) menu.addAction(combine_);
  menu.addAction(statistics_);
  menu.exec(list_->viewport()->mapToGlobal(position));
}

void HistoryView::deleteSelected() {
  const SavedSessions selected = selectedSessions();
  if (selected.size() < 2) return actions_.deleteSelection(visibleURLs());
  QList<QUrl> urls;
  for (const auto& session : selected) urls.append(session->url);
  actions_.deleteSessions(urls);
}

void HistoryView::stepToMatch(bool forward) {
  const QList<QUrl> urls = visibleURLs();
  if (searchField_->text().isEmpty() || urls.isEmpty() || detail_->stepToMatch(forward)) return;
  const auto selected = library_.selection();
  const qsizetype place = selected ? urls.indexOf(*selected) : -1;
  const qsizetype last = urls.size() - 1;
  // Around the ends of the list.
  const qsizetype next = forward ? (place < last ? place + 1 : 0) : (place > 0 ? place - 1 : last);
  library_.select(urls[next]);
  detail_->showMatchAtEnd(!forward);
}

void HistoryView::renameSelected() {
  if (const auto selected = library_.selectedSession()) actions_.renameSession(*selected);
}

void HistoryView::combineSelected() {
  actions_.saveCombined(combined(selectedSessions()));
}

void HistoryView::showStatistics() {
  if (const auto selected = library_.selectedSession()) actions_.showStatistics(selected->session);
}

void HistoryView::exportSelected() {
  if (const SavedSessions several = selectedSessions(); several.size() > 1) {
    return actions_.exportSession(combined(several), std::nullopt);
  }
  if (const auto selected = library_.selectedSession()) {
    actions_.exportSession(selected->session, detail_->transcript().selectedLines());
  }
}

void HistoryView::revealSelected() {
  if (const auto selected = library_.selectedSession()) actions_.revealFile(selected->url);
}

}  // namespace velun
