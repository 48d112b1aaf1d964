// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/session_row_delegate.h"

#include "ui/library/session_list_model.h"

#include <QApplication>
#include <QPainter>

namespace velun {

namespace {

constexpr int kMargin = 10;
constexpr int kPadding = 6;
constexpr qreal kSmallText = 0.86;

QFont smallFont(const QFont& font) {
  QFont small = font;
  small.setPointSizeF(font.pointSizeF() * kSmallText);
  return small;
}

QFont headerFont(const QFont& font) {
  QFont header = smallFont(font);
  header.setWeight(QFont::DemiBold);
  return header;
}

void drawElided(QPainter* painter, const QRect& rect, const QFont& font, const QColor& color,
                const QString& text) {
  painter->setFont(font);
  painter->setPen(color);
  const QString elided = QFontMetrics(font).elidedText(text, Qt::ElideRight, rect.width());
  painter->drawText(rect, Qt::AlignVCenter | Qt::AlignLeading | Qt::TextSingleLine, elided);
}

QColor dimmed(QColor color) {
  color.setAlphaF(0.72F);
  return color;
}

}  // namespace

void SessionRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const {
  painter->save();
  const QRect inner = option.rect.adjusted(kMargin, 0, -kMargin, 0);
  const QString title = index.data(Qt::DisplayRole).toString();
  if (index.data(SessionListModel::isHeaderRole).toBool()) {
    const QColor color = dimmed(option.palette.color(QPalette::Active, QPalette::Text));
    const QRect text = inner.adjusted(0, kPadding, 0, 0);
    drawElided(painter, text, headerFont(option.font), color, title);
    painter->restore();
    return;
  }
  QStyleOptionViewItem background(option);
  initStyleOption(&background, index);
  background.text.clear();
  QApplication::style()->drawControl(QStyle::CE_ItemViewItem, &background, painter, option.widget);
  const bool isSelected = option.state.testFlag(QStyle::State_Selected);
  const QColor color =
      option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text);
  const int titleHeight = QFontMetrics(option.font).height();
  const QFont small = smallFont(option.font);
  QRect line = inner.adjusted(0, kPadding, 0, 0);
  line.setHeight(titleHeight);
  // Dimmed text would lack contrast on the desktop's selection colour.
  const QColor secondary = isSelected ? color : dimmed(color);
  const QString times = index.data(SessionListModel::timesRole).toString();
  const int timesWidth = QFontMetrics(small).size(Qt::TextSingleLine, times).width() + kMargin;
  const QRect timesRect =
      QStyle::alignedRect(option.direction, Qt::AlignRight, QSize(timesWidth, titleHeight), line);
  drawElided(painter, timesRect, small, secondary, times);
  const QSize titleSize(line.width() - timesWidth, titleHeight);
  drawElided(painter, QStyle::alignedRect(option.direction, Qt::AlignLeft, titleSize, line),
             option.font, color, title);
  line.translate(0, titleHeight + 2);
  line.setHeight(QFontMetrics(small).height());
  for (const int role : {SessionListModel::previewRole, SessionListModel::summaryRole}) {
    drawElided(painter, line, small, secondary, index.data(role).toString());
    line.translate(0, line.height() + 2);
  }
  painter->restore();
}

QSize SessionRowDelegate::sizeHint(const QStyleOptionViewItem& option,
                                   const QModelIndex& index) const {
  const int small = QFontMetrics(smallFont(option.font)).height();
  if (index.data(SessionListModel::isHeaderRole).toBool()) {
    return {0, QFontMetrics(headerFont(option.font)).height() + 3 * kPadding};
  }
  return {0, QFontMetrics(option.font).height() + 2 * (2 + small) + 2 * kPadding};
}

}  // namespace velun
