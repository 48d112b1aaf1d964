// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>

class QWidget;

namespace velun {

/// The duration of an animation in milliseconds: `usual`, or 0 with reduced motion.
int motionTime(const QWidget& widget, std::chrono::milliseconds usual);

}  // namespace velun
