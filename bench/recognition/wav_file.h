// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <vector>

namespace velun::bench {

/// A mono sound at 16 kHz, its samples in -1…1.
struct Sound {
  static constexpr double sampleRate = 16'000;

  std::vector<float> samples;

  double seconds() const { return static_cast<double>(samples.size()) / sampleRate; }
};

/// Reads the first channel of a WAV file with 16-bit samples at 16 kHz. Throws std::runtime_error
/// for other formats.
Sound readWav(const QString& path);

}  // namespace velun::bench
