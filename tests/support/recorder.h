// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/pcm_buffer.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <mutex>
#include <vector>

namespace velun::test {

/// Keeps what a capture delivers: the first channel of the last seconds, and counts. Filled on the
/// capture thread, read on the main one.
class Recorder {
 public:
  /// Takes each buffer; the recorder must outlive the capture.
  std::function<void(const PcmBuffer&)> handler();

  /// Forgets everything so far.
  void clear();
  std::size_t bufferCount() const { return bufferCount_; }
  /// The format of the last buffer.
  AudioFormat format() const;
  std::vector<float> samples() const;

  /// The amplitude at `frequency` in the last `frameCount` frames; 0 while there are fewer.
  double amplitudeAt(double frequency, std::size_t frameCount) const;
  /// Whether a tone of amplitude 0.5 is heard in the last 4,800 frames, and another one is not.
  bool hearsOnly(double frequency, double other) const;
  /// The root of the mean square of the last `frameCount` frames; 0 while there are fewer.
  double level(std::size_t frameCount) const;

 private:
  void take(const PcmBuffer& buffer);
  std::vector<float> last(std::size_t frameCount) const;

  mutable std::mutex mutex_;
  std::atomic<std::size_t> bufferCount_ = 0;
  AudioFormat format_;
  std::vector<float> samples_;
};

}  // namespace velun::test
