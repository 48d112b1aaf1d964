// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_notice.h"

#include "ui/caption/caption_appearance.h"
#include "ui/caption/motion.h"
#include "ui/caption/transcript_formats.h"
#include "ui/common/accessible_role.h"

#include <algorithm>
#include <QPainter>

namespace velun {

namespace {

constexpr std::chrono::milliseconds kMessageTime{4000};
constexpr std::chrono::milliseconds kValueTime{1200};
constexpr std::chrono::milliseconds kFade{180};
constexpr double kMessageSize = 12;
constexpr double kValueSize = 15;
constexpr int kGap = 10;
constexpr double kCorner = 9;
constexpr QMargins kMessagePadding{12, 7, 12, 7};
constexpr QMargins kValuePadding{14, 6, 14, 6};

}  // namespace

CaptionNotice::CaptionNotice(Kind kind, Clock& clock, QWidget* parent)
    : PaddedLabel(parent), kind_(kind), clock_(clock) {
  setAccessibleRole(*this, QAccessible::Notification);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setAlignment(Qt::AlignCenter);
  setFont(systemFont(kind == Kind::message ? kMessageSize : kValueSize));
  setPadding(kind == Kind::message ? kMessagePadding : kValuePadding);
  hide();
  opacity_.setStartValue(1.0);
  opacity_.setEndValue(0.0);
  connect(&opacity_, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
  connect(&opacity_, &QVariantAnimation::finished, this, &QWidget::hide);
}

void CaptionNotice::setColors(const CaptionColors& colors) {
  colors_ = colors;
  update();
}

void CaptionNotice::showText(const QString& text, const QString& spoken) {
  setText(text);
  setAccessibleName(spoken.isEmpty() ? text : spoken);
  opacity_.stop();
  fit();
  // Screen readers say a notification that appears. Two windows may show a value; only the one with
  // the keyboard repeats it.
  if (!isVisible()) {
    show();
  } else if (kind_ == Kind::message || window()->isActiveWindow()) {
    announce(*this);
  }
  raise();
  update();
  hiding_ =
      clock_.callAfter(kind_ == Kind::message ? kMessageTime : kValueTime, [this] { fade(); });
}

void CaptionNotice::fade() {
  hiding_.reset();
  if (const int time = motionTime(*this, kFade)) {
    opacity_.setDuration(time);
    opacity_.start();
  } else {
    hide();
  }
}

void CaptionNotice::clear() {
  hiding_.reset();
  opacity_.stop();
  hide();
}

void CaptionNotice::place(const QRect& area) {
  area_ = area;
  fit();
}

void CaptionNotice::fit() {
  const QMargins& padding = this->padding();
  const int most = std::max(area_.width() - 2 * kGap, 0);
  const int wanted = fontMetrics().horizontalAdvance(text()) + padding.left() + padding.right() + 1;
  const int width = std::min(wanted, most);
  QRect frame(0, 0, width, heightForWidth(width));
  frame.moveCenter(area_.center());
  if (kind_ == Kind::message) frame.moveTop(area_.top() + kGap);
  setGeometry(frame);
}

void CaptionNotice::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (opacity_.state() == QAbstractAnimation::Running) {
    painter.setOpacity(opacity_.currentValue().toDouble());
  }
  const QRectF pill = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  const double corner = kind_ == Kind::message ? kCorner : pill.height() / 2;
  painter.setPen(colors_.edge);
  painter.setBrush(colors_.raised);
  painter.drawRoundedRect(pill, corner, corner);
  painter.setPen(CaptionAppearance::text);
  painter.drawText(contentsRect(), Qt::AlignCenter | Qt::TextWordWrap, text());
}

}  // namespace velun
