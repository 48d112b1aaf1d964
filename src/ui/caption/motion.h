// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>

class QWidget;

namespace velun {

/// How long a movement takes, in milliseconds: none where the desktop asks for less motion.
int motionTime(const QWidget& widget, std::chrono::milliseconds usual);

}  // namespace velun
