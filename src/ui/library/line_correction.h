// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/line.h"

#include <optional>
#include <QString>

namespace velun {

/// Asks the user for the right text of a line, which is its text at first, and shows what was
/// recognized if it was corrected before. Nullopt when the user cancels. Main thread; runs the
/// event loop meanwhile.
std::optional<QString> askCorrection(const Line& line);

}  // namespace velun
