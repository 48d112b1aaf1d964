// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <vector>

namespace velun {

/// The samples, limited to -1…1; those that are not finite become 0.
std::vector<float> usableSamples(std::span<const float> samples);

/// The factor, 1…30, that raises speech of this root mean square to the level at which recognition
/// works best.
float gainForLevel(float level);

/// That factor for a phrase of speech in -1…1.
float gainFor(std::span<const float> phrase);

/// The samples times `gain`, limited to -1…1.
std::vector<float> amplified(std::span<const float> samples, float gain);

}  // namespace velun
