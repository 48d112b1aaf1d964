// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/source_times.h"

#include <algorithm>
#include <cmath>

namespace velun {

namespace {

/// Seconds. Buffers are not delivered at even times.
constexpr double kJitter = 0.05;
/// Enough for the longest phrase, with a pause of the source every half second.
constexpr std::size_t kMaxPieces = 500;

}  // namespace

void SourceTimes::add(double audioBegin, double audioEnd, double sourceEnd) {
  const double offset = sourceEnd - audioEnd;
  if (!pieces_.empty() && std::abs(pieces_.back().offset - offset) < kJitter) return;
  pieces_.push_back({audioBegin, offset});
  if (pieces_.size() > kMaxPieces) pieces_.pop_front();
}

double SourceTimes::at(double audio) const {
  const auto after = std::find_if(pieces_.begin(), pieces_.end(),
                                  [audio](const Piece& piece) { return piece.begin > audio; });
  if (after == pieces_.begin()) return pieces_.empty() ? audio : audio + pieces_.front().offset;
  return audio + std::prev(after)->offset;
}

}  // namespace velun
