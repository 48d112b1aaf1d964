// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/recording/recording_format.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velun {

/// A recording that cannot be decoded.
struct DecodeFailure {
  RecordingFault fault;
};

/// The sound of an audio or video file, as mono samples at `kSpeechSampleRate` between −1 and 1.
/// The samples follow the file's own clock: a gap in the sound is silence. Damaged parts are left
/// out. Nothing but the file is read: playlists that name other places are refused. For one thread.
class RecordingDecoder {
 public:
  /// Throws `DecodeFailure`.
  explicit RecordingDecoder(const std::string& path);
  ~RecordingDecoder();

  /// In seconds; nullopt if the file does not tell, such as a stream.
  std::optional<double> duration() const;

  /// The next samples, about a tenth of a second to a second of them; empty at the end.
  std::vector<float> next();

  /// Whether the end came early: the rest could not be read from the disk, or is damaged.
  bool isBrokenOff() const;

 private:
  class Ffmpeg;
  std::unique_ptr<Ffmpeg> ffmpeg_;
};

}  // namespace velun
