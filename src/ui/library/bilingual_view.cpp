// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/bilingual_view.h"

#include "language/localization.h"
#include "ui/library/session_search.h"

#include <algorithm>
#include <QAction>
#include <QClipboard>
#include <QFontInfo>
#include <QGuiApplication>
#include <QHeaderView>
#include <QScopedValueRollback>

namespace velun {

namespace {

const QColor kMatchColor(0xFF, 0xD5, 0x4A);
constexpr int kCellMargin = 12;

}  // namespace

void BilingualModel::show(SessionTable table, const QFont& small) {
  beginResetModel();
  small_ = small;
  table_ = std::move(table);
  endResetModel();
}

void BilingualModel::highlight(const QString& search) {
  if (std::exchange(search_, search) == search || table_.rows.empty()) return;
  Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1),
                     {Qt::BackgroundRole, Qt::ForegroundRole});
}

bool BilingualModel::isMatch(const QString& text) const {
  return !search_.isEmpty() && !matchesIn(text, search_, 1).empty();
}

bool BilingualModel::isMatch(int row) const {
  return std::ranges::any_of(table_.rows[static_cast<std::size_t>(row)],
                             [this](const QString& text) { return isMatch(text); });
}

int BilingualModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(table_.rows.size());
}

int BilingualModel::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(table_.headings.size());
}

QVariant BilingualModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const QString& text = table_.rows[static_cast<std::size_t>(index.row())][index.column()];
  if (role == Qt::DisplayRole) return text;
  if (role == Qt::TextAlignmentRole) return int(Qt::AlignTop | Qt::AlignLeading);
  if (role == Qt::FontRole && index.column() < table_.narrowColumns) return small_;
  if (role == Qt::BackgroundRole && isMatch(text)) return kMatchColor;
  if (role == Qt::ForegroundRole && isMatch(text)) return QColor(Qt::black);
  return {};
}

QVariant BilingualModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal) return {};
  if (role == Qt::DisplayRole) return table_.headings.value(section);
  if (role == Qt::TextAlignmentRole) return int(Qt::AlignVCenter | Qt::AlignLeading);
  return {};
}

BilingualView::BilingualView(QWidget* parent) : QTableView(parent), copy_(new QAction(this)) {
  setModel(&rows_);
  setObjectName(QStringLiteral("bilingual"));
  setFrameShape(QFrame::NoFrame);
  setWordWrap(true);
  setTextElideMode(Qt::ElideNone);
  setTabKeyNavigation(false);
  setSelectionBehavior(QAbstractItemView::SelectRows);
  setSelectionMode(QAbstractItemView::ContiguousSelection);
  setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  verticalHeader()->hide();
  horizontalHeader()->setHighlightSections(false);
  copy_->setShortcut(QKeySequence::Copy);
  copy_->setShortcutContext(Qt::WidgetShortcut);
  connect(copy_, &QAction::triggered, this, &BilingualView::copySelection);
  setContextMenuPolicy(Qt::ActionsContextMenu);
  addAction(copy_);
}

void BilingualView::show(SessionTable table, double fontSize) {
  const bool isSame = static_cast<int>(table.rows.size()) == rows_.rowCount();
  const QModelIndex current = currentIndex();
  QFont letters = font();
  letters.setPixelSize(qRound(fontSize));
  setFont(letters);
  setAccessibleName(L("Original and Translations", "원문과 번역"));
  copy_->setText(L("Copy", "복사"));
  verticalHeader()->setDefaultSectionSize(fontMetrics().lineSpacing() + kCellMargin);
  const int narrow = table.narrowColumns;
  // Large letters are for the texts; what is beside them would take half of the room.
  QFont small = letters;
  small.setPixelSize(std::min(letters.pixelSize(), QFontInfo(QGuiApplication::font()).pixelSize()));
  rows_.show(std::move(table), small);
  QHeaderView* header = horizontalHeader();
  header->setSectionResizeMode(QHeaderView::Stretch);
  for (int column = 0; column < narrow; ++column) {
    header->setSectionResizeMode(column, QHeaderView::ResizeToContents);
  }
  if (isSame && current.isValid()) goTo(current.row());
  fitVisibleRows();
}

bool BilingualView::stepToMatch(bool forward) {
  const int step = forward ? 1 : -1;
  for (int row = currentIndex().row() + step; row >= 0 && row < rows_.rowCount(); row += step) {
    if (!rows_.isMatch(row)) continue;
    goTo(row);
    return true;
  }
  return false;
}

void BilingualView::showMatchAtEnd(bool last) {
  const int count = rows_.rowCount();
  for (int i = 0; i < count; ++i) {
    const int row = last ? count - 1 - i : i;
    if (rows_.isMatch(row)) return goTo(row);
  }
}

void BilingualView::goTo(int row) {
  const QModelIndex index = rows_.index(std::min(row, rows_.rowCount() - 1), 0);
  setCurrentIndex(index);
  // Fitting the rows that come into view moves the others.
  for (int i = 0; i < 2; ++i) {
    scrollTo(index, QAbstractItemView::PositionAtCenter);
    fitVisibleRows();
  }
}

std::optional<std::size_t> BilingualView::currentLine() const {
  const QModelIndex current = currentIndex();
  return current.isValid() ? std::optional(static_cast<std::size_t>(current.row())) : std::nullopt;
}

std::optional<LineRange> BilingualView::selectedLines() const {
  const QModelIndexList rows = selectionModel()->selectedRows();
  if (rows.size() < 2) return std::nullopt;
  const auto [first, last] = std::minmax_element(rows.begin(), rows.end());
  return LineRange{static_cast<std::size_t>(first->row()),
                   static_cast<std::size_t>(last->row() - first->row() + 1)};
}

void BilingualView::copySelection() const {
  QModelIndexList cells = selectionModel()->selectedIndexes();
  std::sort(cells.begin(), cells.end());
  QString text;
  int row = -1;
  for (const QModelIndex& cell : cells) {
    if (row >= 0) text += cell.row() == row ? QLatin1Char('\t') : QLatin1Char('\n');
    row = cell.row();
    text += cell.data().toString();
  }
  if (!cells.isEmpty()) QGuiApplication::clipboard()->setText(text);
}

void BilingualView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
  QTableView::currentChanged(current, previous);
  Q_EMIT currentLineChanged();
}

void BilingualView::resizeEvent(QResizeEvent* event) {
  QTableView::resizeEvent(event);
  fitVisibleRows();
}

void BilingualView::scrollContentsBy(int dx, int dy) {
  QTableView::scrollContentsBy(dx, dy);
  fitVisibleRows();
}

void BilingualView::fitVisibleRows() {
  if (isFitting_ || !isVisible()) return;
  const QScopedValueRollback fitting(isFitting_, true);
  const int bottom = viewport()->height();
  for (int row = std::max(rowAt(0), 0); row < rows_.rowCount(); ++row) {
    if (rowViewportPosition(row) > bottom) break;
    resizeRowToContents(row);
  }
}

}  // namespace velun
