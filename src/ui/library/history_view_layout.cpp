// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/accessible_role.h"
#include "ui/common/editing_keys.h"
#include "ui/common/menu_closing.h"
#include "ui/common/notice_label.h"
#include "ui/common/symbol.h"
#include "ui/library/arrangement_menu.h"
#include "ui/library/empty_state_view.h"
#include "ui/library/history_view.h"
#include "ui/library/session_detail_view.h"
#include "ui/library/session_sidebar.h"

#include <algorithm>
#include <QAction>
#include <QLineEdit>
#include <QMenu>
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

}  // namespace

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

}  // namespace velun
