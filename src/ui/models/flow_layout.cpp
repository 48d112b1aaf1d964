// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/flow_layout.h"

#include <algorithm>
#include <QStyle>
#include <QWidget>

namespace velun {

namespace {

constexpr int kGap = 6;

}  // namespace

FlowLayout::FlowLayout(QWidget* parent) : QLayout(parent) {
  setContentsMargins(0, 0, 0, 0);
}

FlowLayout::~FlowLayout() {
  for (QLayoutItem* item : items_) delete item;
}

void FlowLayout::addItem(QLayoutItem* item) {
  items_.push_back(item);
}

QLayoutItem* FlowLayout::itemAt(int index) const {
  return index >= 0 && index < count() ? items_[static_cast<std::size_t>(index)] : nullptr;
}

QLayoutItem* FlowLayout::takeAt(int index) {
  QLayoutItem* item = itemAt(index);
  if (item) items_.erase(items_.begin() + index);
  return item;
}

int FlowLayout::heightForWidth(int width) const {
  return arrange({0, 0, width, 0}, false);
}

QSize FlowLayout::minimumSize() const {
  QSize size;
  for (const QLayoutItem* item : items_) size = size.expandedTo(item->minimumSize());
  return size;
}

void FlowLayout::setGeometry(const QRect& area) {
  QLayout::setGeometry(area);
  arrange(area, true);
}

int FlowLayout::arrange(const QRect& area, bool moves) const {
  const QWidget* parent = parentWidget();
  const Qt::LayoutDirection direction = parent ? parent->layoutDirection() : Qt::LeftToRight;
  QPoint at = area.topLeft();
  int lineHeight = 0;
  for (QLayoutItem* item : items_) {
    if (item->isEmpty()) continue;
    const QSize size = item->sizeHint();
    if (at.x() > area.left() && at.x() + size.width() > area.right() + 1) {
      at = {area.left(), at.y() + lineHeight + kGap};
      lineHeight = 0;
    }
    if (moves) item->setGeometry(QStyle::visualRect(direction, area, QRect(at, size)));
    at.rx() += size.width() + kGap;
    lineHeight = std::max(lineHeight, size.height());
  }
  return at.y() + lineHeight - area.top();
}

}  // namespace velun
