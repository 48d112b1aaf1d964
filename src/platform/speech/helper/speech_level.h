// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <vector>

namespace velun {

/// The factor, 1…30, that raises a phrase of quiet speech in -1…1 to the level at which recognition
/// works best; louder speech stays as it is.
float gainFor(std::span<const float> phrase);

/// The samples times `gain`, limited to -1…1.
std::vector<float> amplified(std::span<const float> samples, float gain);

}  // namespace velun
