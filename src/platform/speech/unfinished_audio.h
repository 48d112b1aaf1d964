// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace velun {

/// The audio that was decoded and whose words are not final, so that another recognizer can decode
/// it again. Times are in seconds of audio since the beginning of the run. One thread at a time.
class UnfinishedAudio {
 public:
  /// Appends samples that were decoded.
  void add(std::span<const float> samples);

  /// Removes what is before `seconds`.
  void removeBefore(double seconds);

  /// Removes all but the last `seconds`.
  void keepLast(double seconds);

  void clear() { keepLast(0); }

  std::span<const float> samples() const { return std::span(samples_).subspan(removed_); }
  /// What there is of the audio between two times, in seconds.
  std::span<const float> between(double begin, double end) const;
  double begin() const;
  double end() const;

 private:
  void remove(std::size_t count);

  std::vector<float> samples_;
  std::size_t removed_ = 0;  ///< of `samples_`, at its beginning
  std::size_t begin_ = 0;    ///< the position of `samples_` in the run, in samples
};

}  // namespace velun
