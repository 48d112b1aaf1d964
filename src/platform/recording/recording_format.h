// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <limits>

namespace velun {

// What velun-decoder writes to its standard output, for velun to read; both of one build. First a
// `RecordingHeader`. Then, if it has no fault, pieces of sound: a number of samples (32 bits) and
// as many `float`. A piece without samples ends the sound, and `kBrokenOff` in place of a number
// says that the rest of the file cannot be read; without either, the decoder has crashed.

/// Why a recording cannot be captioned.
enum class RecordingFault : std::int32_t {
  none,
  notFound,
  noPermission,
  unreadable,    ///< the disk, or whatever the file is on, failed
  notRecording,  ///< no format that is known, or damaged from the start
  noSound,
  unknownCodec,
};

struct RecordingHeader {
  RecordingFault fault = RecordingFault::none;
  std::int32_t reserved = 0;
  /// In seconds; negative if it is not known.
  double duration = -1;
};

inline constexpr std::uint32_t kBrokenOff = std::numeric_limits<std::uint32_t>::max();

}  // namespace velun
