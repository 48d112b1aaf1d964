// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/recording_progress.h"

#include "captions/clock_text.h"
#include "language/localization.h"

#include <algorithm>
#include <cmath>

namespace velun {

namespace {

/// Seconds. Before, the speed says nothing.
constexpr double kMinElapsed = 3;

QString leftText(double seconds) {
  constexpr double kMinute = 60;
  if (seconds < kMinute) {
    return L("%1 s left", "%1초 남음").arg(std::max(1, static_cast<int>(std::lround(seconds))));
  }
  return L("%1 min left", "%1분 남음").arg(std::lround(seconds / kMinute));
}

}  // namespace

QString recordingProgress(double position, std::optional<double> duration, double elapsed) {
  if (!duration || *duration <= 0) return clockText(position, false);
  const QString place =
      L("%1 of %2", "%2 중 %1")
          .arg(clockText(std::min(position, *duration), false), clockText(*duration, false));
  if (elapsed < kMinElapsed || position <= 0) return place;
  const double left = std::max(0.0, *duration - position) * elapsed / position;
  return place + QStringLiteral(", ") + leftText(left);
}

}  // namespace velun
