// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/level_meter_levels.h"

#include <functional>
#include <QTimer>
#include <QWidget>
#include <vector>

namespace velun {

/// Bars that move with the captured sound. Animates only while it is visible and has something to
/// show. Hidden from screen readers.
class LevelMeter final : public QWidget {
  Q_OBJECT

 public:
  static constexpr QSize frame{72, 16};

  /// `bands` returns the current band levels in dB, or nothing while captions are off.
  explicit LevelMeter(std::function<std::vector<float>()> bands, QWidget* parent = nullptr);

  /// Set whether captions are on: the meter then polls the levels, and otherwise comes to rest.
  void setRunning(bool running);

  const LevelMeterLevels& levels() const { return levels_; }
  bool isMoving() const { return timer_.isActive(); }

  /// Advances by one frame.
  void tick();

  /// The bars of a meter of that size, from the leading to the trailing edge.
  static std::vector<QRectF> bars(const LevelMeterLevels::Heights& heights, QSizeF size);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  std::function<std::vector<float>()> bands_;
  LevelMeterLevels levels_;
  std::vector<QRectF> shown_;
  bool running_ = false;
  QTimer timer_{this};
};

}  // namespace velun
