// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/level_meter_levels.h"

#include <functional>
#include <QTimer>
#include <QWidget>
#include <vector>

namespace velun {

/// The bars that move with the captured sound. Moves only while it is visible and there is
/// something to show. Not for screen readers.
class LevelMeter final : public QWidget {
  Q_OBJECT

 public:
  static constexpr QSize frame{72, 16};

  /// `bands` gives the band levels of the moment in dB, or nothing while captions are off.
  explicit LevelMeter(std::function<std::vector<float>()> bands, QWidget* parent = nullptr);

  /// Whether captions are on: then it keeps looking for levels, else it comes to rest.
  void setRunning(bool running);

  const LevelMeterLevels& levels() const { return levels_; }
  bool isMoving() const { return timer_.isActive(); }

  /// One frame.
  void tick();

  /// The bars within a meter of that size, from the leading to the trailing edge.
  static std::vector<QRectF> bars(const LevelMeterLevels::Heights& heights, QSizeF size);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  std::function<std::vector<float>()> bands_;
  LevelMeterLevels levels_;
  bool running_ = false;
  QTimer timer_;
};

}  // namespace velun
