// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/thin_progress_bar.h"

#include "ui/caption/caption_appearance.h"

#include <QPainter>

namespace velun {

namespace {

constexpr QSize kSize{240, 4};
/// White at 0.35: 3:1 against the panel.
constexpr QColor kTrack{255, 255, 255, 90};

}  // namespace

ThinProgressBar::ThinProgressBar(QWidget* parent) : QProgressBar(parent) {
  setFixedSize(kSize);
  setTextVisible(false);
}

void ThinProgressBar::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  const double corner = height() / 2.0;
  painter.setBrush(kTrack);
  painter.drawRoundedRect(QRectF(rect()), corner, corner);
  const double share = maximum() > 0 ? static_cast<double>(value()) / maximum() : 0;
  painter.setBrush(CaptionAppearance::accent);
  painter.drawRoundedRect(QRectF(0, 0, width() * share, height()), corner, corner);
}

}  // namespace velun
