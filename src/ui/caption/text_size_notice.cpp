// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/text_size_notice.h"

#include "language/localization.h"
#include "platform/foundation/clock.h"
#include "settings/app_settings.h"
#include "ui/caption/caption_appearance.h"
#include "ui/caption/motion.h"
#include "ui/caption/transcript_formats.h"
#include "ui/common/accessible_role.h"

#include <QEvent>
#include <QPainter>

namespace velun {

namespace {

constexpr std::chrono::milliseconds kShownTime{1200};
constexpr std::chrono::milliseconds kFade{180};
constexpr double kTextSize = 15;
constexpr QMargins kMargins(14, 6, 14, 6);

}  // namespace

TextSizeNotice::TextSizeNotice(AppSettings& settings, Clock& clock, QWidget& over)
    : QWidget(over.parentWidget()), settings_(settings), clock_(clock), over_(over) {
  setAccessibleRole(*this, QAccessible::Notification);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  setFont(systemFont(kTextSize));
  hide();
  over.installEventFilter(this);
  opacity_.setStartValue(1.0);
  opacity_.setEndValue(0.0);
  connect(&opacity_, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
  connect(&opacity_, &QVariantAnimation::finished, this, &QWidget::hide);
  connect(&settings, &AppSettings::fontSizeChanged, this, &TextSizeNotice::present);
}

TextSizeNotice::~TextSizeNotice() = default;

void TextSizeNotice::present() {
  if (!over_.isVisible()) return;
  const QString size = QString::number(settings_.fontSize());
  text_ = L(size + " pt", size + "포인트");
  setAccessibleName(L("Text size " + size + " points", "글자 크기 " + size + "포인트"));
  opacity_.stop();
  place();
  const bool wasVisible = isVisible();
  show();
  raise();
  update();
  // Screen readers say a notification that appears. Two windows may show the size; only the one
  // with the keyboard repeats it.
  if (wasVisible && window()->isActiveWindow()) announce(*this);
  hiding_ = clock_.callAfter(kShownTime, [this] { fade(); });
}

void TextSizeNotice::fade() {
  hiding_.reset();
  if (const int time = motionTime(*this, kFade)) {
    opacity_.setDuration(time);
    opacity_.start();
  } else {
    hide();
  }
}

bool TextSizeNotice::eventFilter(QObject*, QEvent* event) {
  if (event->type() == QEvent::Resize || event->type() == QEvent::Move) place();
  return false;
}

void TextSizeNotice::place() {
  const QSize text = fontMetrics().size(Qt::TextSingleLine, text_);
  QRect frame(QPoint(), text.grownBy(kMargins));
  frame.moveCenter(over_.geometry().center());
  setGeometry(frame);
}

void TextSizeNotice::setColors(const CaptionColors& colors) {
  colors_ = colors;
  update();
}

void TextSizeNotice::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (opacity_.state() == QAbstractAnimation::Running) {
    painter.setOpacity(opacity_.currentValue().toDouble());
  }
  const QRectF pill = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.setPen(colors_.edge);
  painter.setBrush(colors_.raised);
  painter.drawRoundedRect(pill, pill.height() / 2, pill.height() / 2);
  painter.setPen(CaptionAppearance::text);
  painter.drawText(rect(), Qt::AlignCenter, text_);
}

}  // namespace velun
