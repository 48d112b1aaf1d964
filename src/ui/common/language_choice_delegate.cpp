// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/language_choice_delegate.h"

#include "ui/common/language_choice_model.h"
#include "ui/common/symbol.h"

#include <algorithm>
#include <QApplication>
#include <QPainter>

namespace velun {

namespace {

constexpr int kMarkSize = 14;
constexpr int kMargin = 8;
constexpr int kNameLeft = kMargin + kMarkSize + kMargin;
constexpr int kMinGap = 24;
constexpr int kMinHeight = 28;
constexpr float kStatusOpacity = 0.78F;

}  // namespace

void LanguageChoiceDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                                   const QModelIndex& index) const {
  QStyleOptionViewItem row = option;
  initStyleOption(&row, index);
  row.text.clear();
  const QStyle* style = row.widget ? row.widget->style() : QApplication::style();
  style->drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);

  const bool isSelected = option.state & QStyle::State_Selected;
  const QColor text = option.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text);
  const bool leftToRight = option.direction == Qt::LeftToRight;
  if (index.data(LanguageChoiceModel::isCurrentRole).toBool()) {
    const int left =
        leftToRight ? option.rect.left() + kMargin : option.rect.right() - kMargin - kMarkSize;
    const qreal ratio = painter->device()->devicePixelRatioF();
    painter->drawPixmap(left, option.rect.center().y() - kMarkSize / 2,
                        symbolPixmap(QStringLiteral("checkmark"), kMarkSize, text, ratio));
  }
  const QRect line = leftToRight ? option.rect.adjusted(kNameLeft, 0, -kMargin, 0)
                                 : option.rect.adjusted(kMargin, 0, -kNameLeft, 0);
  const QString status = index.data(LanguageChoiceModel::statusRole).toString();
  const int forStatus = option.fontMetrics.horizontalAdvance(status);
  const int forName = line.width() - (status.isEmpty() ? 0 : forStatus + kMargin);
  const QString name =
      option.fontMetrics.elidedText(index.data().toString(), Qt::ElideRight, std::max(0, forName));
  const Qt::Alignment start = QStyle::visualAlignment(option.direction, Qt::AlignLeft);
  const Qt::Alignment end = QStyle::visualAlignment(option.direction, Qt::AlignRight);
  painter->save();
  painter->setFont(option.font);
  painter->setPen(text);
  painter->drawText(line, static_cast<int>(Qt::AlignVCenter | start), name);
  QColor faded = text;
  if (!isSelected) faded.setAlphaF(kStatusOpacity);
  painter->setPen(faded);
  painter->drawText(line, static_cast<int>(Qt::AlignVCenter | end), status);
  painter->restore();
}

QSize LanguageChoiceDelegate::sizeHint(const QStyleOptionViewItem& option,
                                       const QModelIndex& index) const {
  const QFontMetrics& letters = option.fontMetrics;
  const QString status = index.data(LanguageChoiceModel::statusRole).toString();
  const int width = kNameLeft + letters.horizontalAdvance(index.data().toString()) + kMinGap +
                    letters.horizontalAdvance(status) + kMargin;
  return {width, std::max(kMinHeight, letters.height() + kMargin)};
}

}  // namespace velun
