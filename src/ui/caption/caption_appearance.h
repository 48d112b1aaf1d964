// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <QColor>
#include <QSize>

namespace velun {

/// Constants shared by the parts of the panel. Lengths are in points.
struct CaptionAppearance {
  static constexpr int headerHeight = 44;
  static constexpr std::chrono::milliseconds headerDuration{220};
  static constexpr double defaultFontSize = 16.0;

  static constexpr QSize defaultSize{560, 250};
  /// Without the header.
  static constexpr QSize minimumSize{480, 190};
  /// The distance between the bottom of the screen's available area and the panel.
  static constexpr int defaultBottomGap = 60;

  static constexpr QColor text{255, 255, 255};
  /// White at 0.65.
  static constexpr QColor secondaryText{255, 255, 255, 166};
  /// White at 0.85.
  static constexpr QColor symbol{255, 255, 255, 217};
  static constexpr QColor accent{94, 168, 255};
};

}  // namespace velun
