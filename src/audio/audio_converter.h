// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/pcm_buffer.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <vector>

namespace velun {

/// Converts PCM audio from one format to another: sample kind, layout, channels and rate. Keeps
/// its state between calls, so a stream cut into buffers converts like the whole. One thread at a
/// time.
class AudioConverter {
 public:
  /// What an input block says about the buffer that it returns.
  enum class InputStatus {
    haveData = 0,
    /// There is none at the moment; more may come with a later call.
    noDataNow = 1,
    /// There will be no more, so what is still inside comes out.
    endOfStream = 2,
  };

  enum class OutputStatus {
    /// The output is full; more may be inside.
    haveData = 0,
    /// All that could be made of the input so far is in the output.
    inputRanDry = 1,
    endOfStream = 2,
    error = 3,
  };

  /// Sets the status and returns the next input buffer, or null without data.
  using InputBlock = std::function<const PcmBuffer*(InputStatus&)>;

  /// None when there is no such conversion (a rate or channel count that is not positive, or one
  /// too large).
  static std::unique_ptr<AudioConverter> make(const AudioFormat& from, const AudioFormat& to);

  virtual ~AudioConverter();
  AudioConverter(const AudioConverter&) = delete;
  AudioConverter& operator=(const AudioConverter&) = delete;

  const AudioFormat& inputFormat() const { return from_; }
  const AudioFormat& outputFormat() const { return to_; }

  /// Fills `output` from its start up to its capacity and sets its length. Asks `input` for a
  /// buffer at least once, and again as long as there is room. What does not fit stays inside for
  /// the next call. An output or input of another format is an error.
  OutputStatus convert(PcmBuffer& output, const InputBlock& input);

 protected:
  AudioConverter(const AudioFormat& from, const AudioFormat& to) : from_(from), to_(to) {}

 private:
  /// Takes interleaved frames in the output's channels.
  virtual bool push(std::span<const float> samples) = 0;
  /// Says that no more frames come.
  virtual bool finish() = 0;
  /// Hands out up to `capacity` frames; returns how many, negative on an error.
  virtual std::ptrdiff_t pull(float* output, std::size_t capacity) = 0;

  bool pushBuffer(const PcmBuffer& buffer);
  bool pullInto(PcmBuffer& output);

  AudioFormat from_;
  AudioFormat to_;
  std::vector<float> mixed_;
  std::vector<float> converted_;
};

}  // namespace velun
