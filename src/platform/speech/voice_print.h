// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

namespace velun {

/// How a speaker model's prints are compared: by their cosine, −1…1.
struct VoiceLimits {
  double same = 0.45;      ///< above it, two prints are of the same voice
  double different = 0.4;  ///< below it, they are of different voices

  bool operator==(const VoiceLimits&) const = default;
};

/// How a voice sounds, as a speaker model describes it.
struct VoicePrint {
  std::vector<float> values;  ///< of length 1 as a vector
  double seconds = 0;         ///< the length of the speech
  VoiceLimits limits = {};    ///< of the model

  bool operator==(const VoicePrint&) const = default;
};

}  // namespace velun
