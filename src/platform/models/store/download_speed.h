// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <deque>
#include <optional>

namespace velun {

/// The average speed of a download over the last seconds.
class DownloadSpeed {
 public:
  /// Adds a measurement: `bytes` were there at `seconds` of a clock that never goes back. Fewer
  /// bytes than before mean that the download started over.
  void add(double seconds, std::int64_t bytes);

  /// 0 until measurements cover a second.
  double bytesPerSecond() const;

  /// The time for `bytes` more at this speed, rounded up; nullopt while the speed is unknown or 0.
  std::optional<int> secondsFor(std::int64_t bytes) const;

 private:
  struct Sample {
    double seconds = 0;
    std::int64_t bytes = 0;
  };
  std::deque<Sample> samples_;
};

}  // namespace velun
