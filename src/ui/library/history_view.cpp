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
#include "ui/library/arrangement_menu.h"
#include "ui/library/empty_state_view.h"
#include "ui/library/session_detail_view.h"
#include "ui/library/session_sections.h"
#include "ui/library/session_sidebar.h"

#include <algorithm>
#include <QAction>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMimeData>
#include <QSplitter>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace velun {

namespace {

constexpr int kSidebarWidth = 290;
/// The width in average letters, which counts with a large font.
constexpr int kSidebarLetters = 26;
/// Beside it, the button of the sidebar stands above the sidebar too.
constexpr int kSearchLetters = kSidebarLetters - 4;
/// At the size that the symbols are drawn for, their lines are thin. They grow with a large font.
constexpr int kIconSide = 20;
constexpr auto kDayCheckInterval = std::chrono::minutes(1);
/// Qt's object name for the action of a field's clear button.
const auto kClearAction = QStringLiteral("_q_qlineeditclearaction");

}  // namespace

HistoryView::HistoryView(HistoryViewModel& library, AppSettings& settings, HistoryActions actions,
                         Clock& clock, QWidget* parent)
    : QWidget(parent),
      library_(library),
      settings_(settings),
      actions_(std::move(actions)),
      clock_(clock),
      commands_(*this) {
  setAcceptDrops(true);
  connectCommands();
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

void HistoryView::connectCommands() {
  const auto run = [this](QAction* action, auto command) {
    connect(action, &QAction::triggered, this, command);
  };
  run(commands_.remove, [this] { deleteSelected(); });
  run(commands_.exportAs, [this] { exportSelected(); });
  run(commands_.openFile, [this] { actions_.openFile(); });
  run(commands_.saveFile, [this] {
    if (const auto selected = library_.selectedSession()) actions_.saveFile(selected->session);
  });
  run(commands_.reveal, [this] { revealSelected(); });
  run(commands_.rename, [this] { renameSelected(); });
  run(commands_.statistics, [this] { showStatistics(); });
  run(commands_.combine, [this] { combineSelected(); });
  run(commands_.undo, [this] { actions_.undoDelete(); });
  run(commands_.nextMatch, [this] { stepToMatch(true); });
  run(commands_.previousMatch, [this] { stepToMatch(false); });
  run(commands_.refresh, [this] { library_.reload(); });
  run(commands_.sidebar, [this] { setSidebarVisible(!isSidebarVisible()); });
  run(commands_.find, [this] {
    // The table has no bar of its own; the search marks its cells too.
    if (!detail_->openFindBar()) searchField_->setFocus(Qt::ShortcutFocusReason);
  });
  run(commands_.print, [this] {
    const auto selected = library_.selectedSession();
    if (selected) actions_.printSession(selected->session, detail_->printOptions());
  });
  run(commands_.copyLine, [this] { detail_->copyCurrentLine(); });
  run(commands_.correctLine, [this] { changeLine(actions_.correctLine); });
  run(commands_.renameSpeaker, [this] { changeLine(actions_.renameSpeaker); });
  run(commands_.undoCorrection, [this] { changeLine(actions_.undoCorrection); });
}

void HistoryView::makeToolBar() {
  toolBar_ = new QToolBar(this);
  toolBar_->setMovable(false);
  const int side = std::max(kIconSide, fontMetrics().height());
  toolBar_->setIconSize(QSize(side, side));
  toolBar_->addAction(commands_.sidebar);
  arrange_ = makeMenuButton();
  arrangement_ = new ArrangementMenu(library_, arrange_);
  arrange_->setMenu(arrangement_);
  connect(arrangement_, &ArrangementMenu::arrangementChanged, this, &HistoryView::presentSessions);
  toolBar_->addWidget(arrange_);
  auto* space = new QWidget(toolBar_);
  space->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  toolBar_->addWidget(space);
  toolBar_->addAction(commands_.remove);
  toolBar_->addAction(commands_.exportAs);
  more_ = makeMenuButton();
  more_->setIcon(symbolIcon(QStringLiteral("ellipsis.circle")));
  more_->setMenu(makeMoreMenu());
  toolBar_->addWidget(more_);
  for (QAction* each : {commands_.sidebar, commands_.remove, commands_.exportAs}) {
    toolBar_->widgetForAction(each)->setFocusPolicy(Qt::TabFocus);
  }
}

QToolButton* HistoryView::makeMenuButton() {
  auto* button = new QToolButton(this);
  setOpensMenu(*button);
  button->setPopupMode(QToolButton::InstantPopup);
  button->setFocusPolicy(Qt::TabFocus);
  return button;
}

QMenu* HistoryView::makeMoreMenu() {
  auto* menu = new QMenu(more_);
  closeWhenChosen(*menu);
  menu->addActions({commands_.openFile, commands_.saveFile, commands_.reveal, commands_.print,
                    commands_.rename, commands_.combine, commands_.statistics, commands_.undo,
                    commands_.refresh});
  menu->addSeparator();
  menu->addActions({commands_.copyLine, commands_.correctLine, commands_.undoCorrection,
                    commands_.renameSpeaker});
  menu->addSeparator();
  menu->addMenu(arrangement_);
  return menu;
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
  sidebar_ = new SessionSidebar(splitter_);
  connect(sidebar_, &SessionSidebar::chosen, this,
          [this](const std::shared_ptr<const ListedSession>& session) {
            library_.select(session ? std::optional(session->url) : std::nullopt);
            enableActions();
          });
  connect(sidebar_, &SessionSidebar::deleteRequested, this, &HistoryView::deleteSelected);
  connect(sidebar_, &SessionSidebar::menuRequested, this, &HistoryView::showContextMenu);
  splitter_->addWidget(sidebar_);
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
  detail_->setLineActions({commands_.copyLine, commands_.correctLine, commands_.undoCorrection,
                           commands_.renameSpeaker});
  connect(detail_, &SessionDetailView::currentLineChanged, this, &HistoryView::enableLineActions);
  connect(detail_, &SessionDetailView::labelClicked, commands_.renameSpeaker, &QAction::trigger,
          Qt::QueuedConnection);
  nothingSelected_ = new EmptyStateView(pane);
  nothingSelected_->setObjectName(QStringLiteral("nothingSelected"));
  auto* column = new QVBoxLayout(pane);
  column->setContentsMargins(0, 0, 0, 0);
  column->addWidget(detail_);
  column->addWidget(nothingSelected_);
  return pane;
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
  connect(toList, &QAction::triggered, this, [this] { sidebar_->focusList(); });
  QWidget* field = searchField_;
  field->addAction(toList);
}

void HistoryView::followLibrary() {
  connect(&library_, &HistoryViewModel::sessionsChanged, this, [this] {
    search_.setSessions(library_.sessions());
    presentSessions();
  });
  connect(&library_, &HistoryViewModel::selectionChanged, this, &HistoryView::presentSelection);
  connect(&library_, &HistoryViewModel::errorChanged, this, &HistoryView::presentError);
  connect(&library_, &HistoryViewModel::reloaded, this, &HistoryView::presentSessions);
  // The search and the filter may exclude the opened files.
  connect(&library_, &HistoryViewModel::filesOpened, this, [this](int count) {
    if (count == 0) return;
    searchField_->clear();
    arrangement_->showAll();
  });
  connect(&search_, &SessionSearch::ready, this, &HistoryView::presentSessions);
  connect(searchField_, &QLineEdit::textChanged, this, &HistoryView::presentSessions);
  // What was found is shown there.
  connect(searchField_, &QLineEdit::textEdited, this, [this] { setSidebarVisible(true); });
  connect(&Localization::shared(), &Localization::languageChanged, this, &HistoryView::translate);
  search_.setSessions(library_.sessions());
}

QList<QUrl> HistoryView::visibleURLs() const {
  return sidebar_->visibleURLs();
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
  commands_.translate();
  arrangement_->translate();
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
  presentSessions();
  presentError();
}

void HistoryView::presentSessions() {
  const QString text = searchField_->text();
  const SavedSessions shown = search_.matches(text);
  shownDay_ = localDay(clock_.now());
  const SessionArrangement& arrangement = arrangement_->arrangement();
  const SavedSessions listed = arranged(shown, arrangement, shownDay_);
  sidebar_->list(listed, arrangement.isByDate() ? shownDay_ : QDate());
  const bool hasNoSessions = library_.sessions().empty();
  // Screen readers announce the empty state when it appears, so show it only after the listing.
  const bool isEmpty =
      listed.empty() && !(hasNoSessions && (library_.isReloading() || !isVisible()));
  if (isEmpty && hasNoSessions) {
    sidebar_->showEmpty(QStringLiteral("text.bubble"),
                        L("No Saved Sessions", "저장된 세션이 없습니다"));
  } else if (isEmpty) {
    sidebar_->showEmpty(QStringLiteral("magnifyingglass"), L("No Results", "검색 결과가 없습니다"));
  } else {
    sidebar_->showList();
  }
  presentArrangement();
  presentSelection();
}

void HistoryView::presentArrangement() {
  const bool isFilter = arrangement_->arrangement().isFilter();
  arrange_->setIcon(symbolIcon(isFilter ? QStringLiteral("line.3.horizontal.decrease.badge")
                                        : QStringLiteral("line.3.horizontal.decrease")));
  const QString text = isFilter ? L("Sort and Filter: some sessions are left out",
                                    "정렬 및 필터: 일부 기록만 표시됨")
                                : arrangement_->title();
  arrange_->setText(text);
  arrange_->setToolTip(text);
  arrange_->setAccessibleName(text);
}

void HistoryView::presentSelection() {
  const auto selected = library_.selectedSession();
  const bool isListed = sidebar_->present(library_.selection());
  detail_->show(selected);
  presentNothingSelected();
  detail_->highlight(searchField_->text());
  for (QAction* each : {commands_.exportAs, commands_.saveFile, commands_.reveal, commands_.find,
                        commands_.rename, commands_.statistics, commands_.print}) {
    each->setEnabled(selected != nullptr);
  }
  commands_.remove->setEnabled(isListed);
  enableActions();
}

void HistoryView::enableActions() {
  commands_.combine->setEnabled(sidebar_->selectedSessions().size() > 1);
  commands_.undo->setEnabled(library_.canUndoDelete());
  enableLineActions();
}

void HistoryView::enableLineActions() {
  const Line* line = detail_->currentLine();
  commands_.copyLine->setEnabled(line);
  commands_.correctLine->setEnabled(line);
  commands_.undoCorrection->setEnabled(line && line->original);
  commands_.renameSpeaker->setEnabled(line && line->speaker);
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
        commands_.openFile);
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
  QMenu menu(this);
  menu.addAction(L("Show in File Manager", "파일 관리자에서 보기"), this,
                 &HistoryView::revealSelected);
  menu.addAction(L("Export…", "내보내기…"), this, &HistoryView::exportSelected);
  menu.addAction(L("Delete", "삭제"), this, &HistoryView::deleteSelected);
  menu.addAction(commands_.rename);
  if (commands_.combine->isEnabled()) menu.addAction(commands_.combine);
  menu.addAction(commands_.statistics);
  menu.exec(position);
}

void HistoryView::deleteSelected() {
  const SavedSessions selected = sidebar_->selectedSessions();
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
  if (const auto session = combinedSelection()) actions_.saveCombined(*session);
}

std::optional<CaptionSession> HistoryView::combinedSelection() {
  auto parts = library_.read(sidebar_->selectedSessions());
  if (parts) return combined(std::move(*parts));
  // The listing says that one cannot be read.
  library_.reload();
  return std::nullopt;
}

void HistoryView::changeLine(const std::function<void(const SavedSession&, const Line&)>& change) {
  const auto selected = library_.selectedSession();
  const Line* line = detail_->currentLine();
  if (!selected || !line) return;
  // A copy: the transcript is replaced meanwhile.
  const Line chosen = *line;
  change(*selected, chosen);
}

void HistoryView::showStatistics() {
  if (const auto selected = library_.selectedSession()) actions_.showStatistics(selected->session);
}

void HistoryView::exportSelected() {
  if (sidebar_->selectedSessions().size() > 1) {
    if (const auto session = combinedSelection()) actions_.exportSession(*session, std::nullopt);
    return;
  }
  if (const auto selected = library_.selectedSession()) {
    actions_.exportSession(selected->session, detail_->selectedLines());
  }
}

void HistoryView::revealSelected() {
  if (const auto selected = library_.selectedSession()) actions_.revealFile(selected->url);
}

}  // namespace velun
