// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <vector>

namespace velun::bench {

/// A mono sound, its samples in -1…1.
struct Sound {
  std::vector<float> samples;
  double sampleRate = 16000;

  double seconds() const { return static_cast<double>(samples.size()) / sampleRate; }
};

/// Reads 16-bit PCM from a WAV file; of several channels the first. Throws std::runtime_error.
Sound readWav(const QString& path);

}  // namespace velun::bench
