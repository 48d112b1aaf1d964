// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/group_header.h"

#include "language/localization.h"
#include "ui/common/symbol.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionFocusRect>

namespace velun {

namespace {

constexpr int kMargin = 8;
constexpr int kArrow = 14;
constexpr qreal kCorner = 7;
constexpr qreal kSmallText = 0.9;
constexpr float kSecondaryOpacity = 0.72F;

QString elided(const QFont& font, const QString& text, int width) {
  return QFontMetrics(font).elidedText(text, Qt::ElideRight, width);
}

}  // namespace

GroupHeader::GroupHeader(QWidget* parent) : QAbstractButton(parent) {
  setFocusPolicy(Qt::StrongFocus);
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  connect(this, &QAbstractButton::clicked, this, [this] { setOpen(!isOpen_); });
}

void GroupHeader::setOpen(bool isOpen) {
  if (isOpen == isOpen_) return;
  isOpen_ = isOpen;
  describe();
  update();
  Q_EMIT openChanged(isOpen);
}

void GroupHeader::describe() {
  const QString state = isOpen_ ? L("Its models are shown", "모델 목록 펼쳐짐")
                                : L("Its models are hidden", "모델 목록 접힘");
  setAccessibleDescription(summary_ + ". " + state);
}

void GroupHeader::setTexts(const QString& title, const QString& ownName, const QString& summary) {
  title_ = title;
  ownName_ = ownName == title ? QString() : ownName;
  summary_ = summary;
  setText(title_);
  setAccessibleName(ownName_.isEmpty() ? title_ : title_ + ", " + ownName_);
  describe();
  updateGeometry();
  update();
}

QFont GroupHeader::titleFont() const {
  QFont bold = font();
  bold.setWeight(QFont::DemiBold);
  return bold;
}

QFont GroupHeader::smallFont() const {
  QFont small = font();
  small.setPointSizeF(small.pointSizeF() * kSmallText);
  return small;
}

QSize GroupHeader::sizeHint() const {
  const int height = QFontMetrics(titleFont()).height() + 2 + QFontMetrics(smallFont()).height();
  return {200, height + 2 * kMargin};
}

QSize GroupHeader::minimumSizeHint() const {
  return {120, sizeHint().height()};
}

void GroupHeader::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QColor text = palette().color(QPalette::WindowText);
  if (underMouse() || isDown()) {
    QColor fill = text;
    fill.setAlphaF(isDown() ? 0.12F : 0.06F);
    QPainterPath background;
    background.addRoundedRect(rect(), kCorner, kCorner);
    painter.fillPath(background, fill);
  }
  const QString symbol = isOpen_ ? "chevron.up" : "chevron.down";
  const QPixmap arrow = symbolPixmap(symbol, kArrow, text, devicePixelRatioF());
  const bool isMirrored = layoutDirection() == Qt::RightToLeft;
  const int arrowLeft = isMirrored ? kMargin : width() - kMargin - kArrow;
  painter.drawPixmap(arrowLeft, (height() - kArrow) / 2, arrow);

  QRect line = rect().adjusted(kMargin, kMargin, -kMargin, -kMargin);
  line.setLeft(line.left() + (isMirrored ? kArrow + kMargin : 0));
  line.setRight(line.right() - (isMirrored ? 0 : kArrow + kMargin));
  QColor secondary = text;
  secondary.setAlphaF(kSecondaryOpacity);
  painter.setFont(titleFont());
  painter.setPen(text);
  const QFontMetrics bold(titleFont());
  line.setHeight(bold.height());
  painter.drawText(line, Qt::AlignLeading | Qt::AlignVCenter,
                   elided(titleFont(), title_, line.width()));
  painter.setFont(smallFont());
  painter.setPen(secondary);
  if (!ownName_.isEmpty()) {
    QRect rest = line;
    const int taken = bold.horizontalAdvance(title_) + kMargin;
    isMirrored ? rest.setRight(rest.right() - taken) : rest.setLeft(rest.left() + taken);
    if (rest.width() > 0) {
      painter.drawText(rest, Qt::AlignLeading | Qt::AlignVCenter,
                       elided(smallFont(), ownName_, rest.width()));
    }
  }
  line.translate(0, bold.height() + 2);
  line.setHeight(QFontMetrics(smallFont()).height());
  painter.drawText(line, Qt::AlignLeading | Qt::AlignVCenter,
                   elided(smallFont(), summary_, line.width()));
  if (hasFocus()) {
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    focus.rect = rect().adjusted(1, 1, -1, -1);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
  }
}

}  // namespace velun
