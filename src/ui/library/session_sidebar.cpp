// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/session_sidebar.h"

#include "language/localization.h"
#include "ui/library/empty_state_view.h"
#include "ui/library/session_row_delegate.h"

#include <algorithm>
#include <QAction>
#include <QListView>
#include <QScopedValueRollback>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace velun {

namespace {

constexpr int kMinWidth = 200;

}  // namespace

SessionSidebar::SessionSidebar(QWidget* parent)
    : QWidget(parent),
      list_(new QListView(this)),
      listOrEmpty_(new QStackedWidget(this)),
      empty_(new EmptyStateView(this)) {
  setMinimumWidth(kMinWidth);
  makeList();
  empty_->setObjectName(QStringLiteral("emptyList"));
  listOrEmpty_->addWidget(list_);
  listOrEmpty_->addWidget(empty_);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(listOrEmpty_, 1);
}

void SessionSidebar::makeList() {
  list_->setObjectName(QStringLiteral("sessions"));
  list_->setModel(&rows_);
  list_->setItemDelegate(new SessionRowDelegate(list_));
  list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  list_->setDragEnabled(true);
  list_->setDragDropMode(QAbstractItemView::DragOnly);
  list_->setFrameShape(QFrame::NoFrame);
  list_->viewport()->setBackgroundRole(QPalette::Window);
  list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  list_->setContextMenuPolicy(Qt::CustomContextMenu);
  auto* deleteKey = new QAction(list_);
  deleteKey->setShortcut(QKeySequence::Delete);
  deleteKey->setShortcutContext(Qt::WidgetShortcut);
  connect(deleteKey, &QAction::triggered, this, &SessionSidebar::deleteRequested);
  list_->addAction(deleteKey);
  // Not currentChanged: screen readers select a row without making it the current one.
  connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &SessionSidebar::choose);
  connect(list_, &QWidget::customContextMenuRequested, this, &SessionSidebar::requestMenu);
}

void SessionSidebar::choose() {
  if (isPresenting_) return;
  const QModelIndexList rows = list_->selectionModel()->selectedIndexes();
  // Of several, the one that was chosen last is shown.
  const QModelIndex current = list_->currentIndex();
  const QModelIndex shown = rows.contains(current) || rows.isEmpty() ? current : rows.constLast();
  Q_EMIT chosen(rows.isEmpty() ? nullptr : rows_.sessionAt(shown));
}

void SessionSidebar::requestMenu(const QPoint& position) {
  const QModelIndex row = list_->indexAt(position);
  const auto session = rows_.sessionAt(row);
  if (!session) return;
  if (!list_->selectionModel()->isSelected(row)) Q_EMIT chosen(session);
  Q_EMIT menuRequested(list_->viewport()->mapToGlobal(position));
}

void SessionSidebar::list(const SavedSessions& sessions, const QDate& today) {
  const QScopedValueRollback presenting(isPresenting_, true);
  rows_.show(sessions, today);
  list_->setAccessibleName(L("Saved Sessions", "저장 기록"));
}

void SessionSidebar::showList() {
  listOrEmpty_->setCurrentWidget(list_);
}

void SessionSidebar::showEmpty(const QString& symbol, const QString& text) {
  empty_->show(symbol, text);
  listOrEmpty_->setCurrentWidget(empty_);
}

bool SessionSidebar::present(const std::optional<QUrl>& selected) {
  const QScopedValueRollback presenting(isPresenting_, true);
  const QModelIndex index = selected ? rows_.indexOf(*selected) : QModelIndex();
  if (index.isValid()) {
    // It may be one of several.
    const QModelIndexList rows = list_->selectionModel()->selectedIndexes();
    if (rows.size() < 2 || !rows.contains(index)) list_->setCurrentIndex(index);
    list_->scrollTo(index);
  } else {
    list_->setCurrentIndex({});
    list_->clearSelection();
  }
  return index.isValid();
}

void SessionSidebar::focusList() {
  list_->setFocus(Qt::ShortcutFocusReason);
}

SavedSessions SessionSidebar::selectedSessions() const {
  QModelIndexList rows = list_->selectionModel()->selectedIndexes();
  std::sort(rows.begin(), rows.end());
  SavedSessions sessions;
  for (const QModelIndex& row : rows) {
    if (auto session = rows_.sessionAt(row)) sessions.push_back(std::move(session));
  }
  return sessions;
}

}  // namespace velun
