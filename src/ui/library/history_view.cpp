// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/history_view.h"

#include "language/localization.h"
#include "ui/common/notice_label.h"
#include "ui/common/symbol.h"
#include "ui/library/arrangement_menu.h"
#include "ui/library/empty_state_view.h"
#include "ui/library/session_detail_view.h"
#include "ui/library/session_sections.h"
#include "ui/library/session_sidebar.h"

#include <QAction>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QLineEdit>
#include <QMimeData>
#include <QSplitter>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

namespace velun {

namespace {

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
          "선택하세요."),
        commands_.openFile);
  } else {
    nothingSelected_->setHint(L("Select a session to read it.", "읽을 세션을 선택하세요."));
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

}  // namespace velun
