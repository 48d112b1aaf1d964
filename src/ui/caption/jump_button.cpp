// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/jump_button.h"

#include "language/localization.h"
#include "ui/caption/caption_appearance.h"
#include "ui/caption/motion.h"
#include "ui/common/symbol.h"

#include <QPainter>
#include <utility>

namespace velun {

namespace {

constexpr std::chrono::milliseconds kFade{180};
constexpr int kSymbolSize = 18;

}  // namespace

JumpButton::JumpButton(QWidget* parent) : QAbstractButton(parent) {
  setFixedSize(side, side);
  setAttribute(Qt::WA_Hover);
  setFocusPolicy(Qt::TabFocus);
  hide();
  opacity_.setEasingCurve(QEasingCurve::InOutQuad);
  opacity_.setStartValue(0.0);
  opacity_.setEndValue(1.0);
  connect(&opacity_, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
  connect(&opacity_, &QVariantAnimation::finished, this, [this] { setVisible(wanted_); });
  connect(&Localization::shared(), &Localization::languageChanged, this, &JumpButton::present);
  present();
}

void JumpButton::present() {
  const QString label = L("Jump to Latest Caption", "최신 자막으로 이동");
  setToolTip(label);
  setAccessibleName(label);
}

void JumpButton::setWanted(bool wanted) {
  if (std::exchange(wanted_, wanted) == wanted) return;
  if (wanted) show();
  opacity_.setDuration(motionTime(*this, kFade));
  opacity_.setDirection(wanted ? QAbstractAnimation::Forward : QAbstractAnimation::Backward);
  if (opacity_.state() != QAbstractAnimation::Running) opacity_.start();
}

void JumpButton::setColors(const CaptionColors& colors) {
  colors_ = colors;
  update();
}

void JumpButton::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(opacity_.currentValue().toDouble());
  const QRectF disc = QRectF(rect()).adjusted(1, 1, -1, -1);
  painter.setPen(hasFocus() ? QPen(CaptionAppearance::accent, 2) : QPen(colors_.edge));
  painter.setBrush(underMouse() ? colors_.raisedHover : colors_.raised);
  painter.drawEllipse(disc);
  const int inset = (side - kSymbolSize) / 2;
  painter.drawPixmap(inset, inset,
                     symbolPixmap(QStringLiteral("arrow.down"), kSymbolSize,
                                  CaptionAppearance::symbol, devicePixelRatioF()));
}

}  // namespace velun
