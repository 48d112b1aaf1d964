// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

/// The size of captions that users have not changed, in points.
inline constexpr double kDefaultTextSize = 16.0;

/// The smallest and the largest size that steps reach, in points. A stored size beyond them is kept
/// until the next step.
inline constexpr double kMinTextSize = 9.0;
inline constexpr double kMaxTextSize = 96.0;

/// The size `steps` sizes above `size`, or below it when `steps` is negative. One step is about an
/// eighth, and at least a whole point.
double steppedTextSize(double size, int steps);

}  // namespace velun
