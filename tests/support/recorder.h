// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_source.h"

#include <atomic>
#include <cstddef>
#include <mutex>
#include <vector>

namespace velun::test {

/// Keeps the samples that a source delivers. Filled on the capture thread, read on the main thread.
class Recorder {
 public:
  /// The recorder must outlive the capture.
  AudioSource::Handler handler();

  void clear();
  std::size_t bufferCount() const { return bufferCount_; }

  /// The amplitude at `frequency` in the last `count` samples; 0 while there are fewer.
  double amplitudeAt(double frequency, std::size_t count) const;
  /// Whether a tone of amplitude 0.5 is heard in the last 0.1 s, and another one is not.
  bool hearsOnly(double frequency, double other) const;
  /// The root mean square of the last `count` samples; 0 while there are fewer.
  double level(std::size_t count) const;

 private:
  std::vector<float> last(std::size_t count) const;

  mutable std::mutex mutex_;
  std::atomic<std::size_t> bufferCount_ = 0;
  std::vector<float> samples_;
};

}  // namespace velun::test
