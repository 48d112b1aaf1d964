// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_notice.h"

#include "ui/caption/caption_appearance.h"
#include "ui/caption/transcript_formats.h"
#include "ui/common/accessible_role.h"

#include <algorithm>
#include <QPainter>

namespace velun {

namespace {

constexpr std::chrono::seconds kTime{4};
constexpr double kTextSize = 12;
constexpr int kGap = 10;
constexpr int kCorner = 9;
constexpr QMargins kPadding{12, 7, 12, 7};

}  // namespace

CaptionNotice::CaptionNotice(Clock& clock, QWidget* parent) : QLabel(parent), clock_(clock) {
  setAccessibleRole(*this, QAccessible::Notification);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setTextFormat(Qt::PlainText);
  setWordWrap(true);
  setAlignment(Qt::AlignCenter);
  setFont(systemFont(kTextSize));
  setContentsMargins(kPadding);
  QPalette colors = palette();
  colors.setColor(QPalette::WindowText, CaptionAppearance::text);
  setPalette(colors);
  hide();
}

void CaptionNotice::setColors(const CaptionColors& colors) {
  colors_ = colors;
  update();
}

void CaptionNotice::showText(const QString& text) {
  setText(text);
  setAccessibleName(text);
  fit();
  if (isVisible()) {
    announce(*this);
  } else {
    show();
  }
  raise();
  hiding_ = clock_.callAfter(kTime, [this] { hide(); });
}

void CaptionNotice::clear() {
  hiding_.reset();
  hide();
}

void CaptionNotice::place(const QRect& area) {
  area_ = area;
  fit();
}

void CaptionNotice::fit() {
  const int most = std::max(area_.width() - 2 * kGap, 0);
  const int wanted =
      fontMetrics().horizontalAdvance(text()) + kPadding.left() + kPadding.right() + 1;
  const int width = std::min(wanted, most);
  resize(width, heightForWidth(width));
  move(area_.center().x() - width / 2, area_.top() + kGap);
}

void CaptionNotice::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(colors_.edge);
  painter.setBrush(colors_.raised);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kCorner, kCorner);
  painter.end();
  QLabel::paintEvent(event);
}

}  // namespace velun
