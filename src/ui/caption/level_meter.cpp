// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/level_meter.h"

#include "ui/caption/caption_appearance.h"
#include "ui/common/accessible_role.h"

#include <algorithm>
#include <cmath>
#include <QPainter>
#include <utility>

namespace velun {

namespace {

constexpr int kFrameMilliseconds = 34;  // at most 30 per second
constexpr double kBarWidth = 2;
constexpr double kMinBarHeight = 2;
constexpr double kCorner = 1;

}  // namespace

LevelMeter::LevelMeter(std::function<std::vector<float>()> bands, QWidget* parent)
    : QWidget(parent), bands_(std::move(bands)) {
  hideFromAccessibility(*this);
  setFixedSize(frame);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  timer_.setInterval(kFrameMilliseconds);
  connect(&timer_, &QTimer::timeout, this, &LevelMeter::tick);
}

void LevelMeter::setRunning(bool running) {
  running_ = running;
  if (running_ && isVisible()) timer_.start();
}

void LevelMeter::tick() {
  const std::vector<float> bands = bands_();
  levels_.advance(bands);
  if (!running_ && bands.empty() && levels_.isSettled()) timer_.stop();
  // In silence nothing is painted.
  std::vector<QRectF> now = bars(levels_.heights(), QSizeF(frame));
  if (std::exchange(shown_, std::move(now)) != shown_) update();
}

std::vector<QRectF> LevelMeter::bars(const LevelMeterLevels::Heights& heights, QSizeF size) {
  const int n = static_cast<int>(heights.size()) - 1;
  const int count = 2 * n + 1;
  const double gap = (size.width() - kBarWidth * count) / (2 * n);
  std::vector<QRectF> bars;
  for (int j = 0; j < count; ++j) {
    const auto band = static_cast<std::size_t>(std::abs(j - n));
    const double height = std::max(size.height() * heights[band], kMinBarHeight);
    bars.emplace_back((gap + kBarWidth) * j, (size.height() - height) / 2, kBarWidth, height);
  }
  return bars;
}

void LevelMeter::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(CaptionAppearance::symbol);
  for (const QRectF& bar : bars(levels_.heights(), QSizeF(frame))) {
    painter.drawRoundedRect(bar, kCorner, kCorner);
  }
}

void LevelMeter::showEvent(QShowEvent*) {
  if (running_ || !levels_.isSettled()) timer_.start();
}

void LevelMeter::hideEvent(QHideEvent*) {
  timer_.stop();
}

}  // namespace velun
