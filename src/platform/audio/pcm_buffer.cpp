// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/pcm_buffer.h"

namespace velun {

namespace {

std::size_t sampleSize(const AudioFormat& format) {
  return format.sample == AudioFormat::Sample::float32 ? sizeof(float) : sizeof(std::int16_t);
}

std::size_t frameSize(const AudioFormat& format) {
  return sampleSize(format) * static_cast<std::size_t>(format.channelCount);
}

}  // namespace

PcmBuffer::PcmBuffer(const AudioFormat& format, std::size_t frameCapacity)
    : format_(format),
      frameCapacity_(frameCapacity),
      owned_(std::make_unique<std::byte[]>(frameCapacity * frameSize(format))),
      bytes_(owned_.get()) {}

PcmBuffer PcmBuffer::view(const AudioFormat& format, std::span<const std::byte> bytes) {
  PcmBuffer buffer;
  buffer.format_ = format;
  buffer.bytes_ = bytes.data();
  buffer.frameLength_ = frameSize(format) == 0 ? 0 : bytes.size() / frameSize(format);
  buffer.frameCapacity_ = buffer.frameLength_;
  return buffer;
}

std::span<const float> PcmBuffer::floatSamples() const {
  const float* first = floatChannel(0);
  if (!first) return {};
  return {first, frameLength_ * static_cast<std::size_t>(format_.channelCount)};
}

std::span<const std::int16_t> PcmBuffer::int16Samples() const {
  const std::int16_t* first = int16Channel(0);
  if (!first) return {};
  return {first, frameLength_ * static_cast<std::size_t>(format_.channelCount)};
}

const float* PcmBuffer::floatChannel(int channel) const {
  if (format_.sample != AudioFormat::Sample::float32) return nullptr;
  const auto distance = format_.isInterleaved ? 1 : frameCapacity_;
  return reinterpret_cast<const float*>(bytes_) + static_cast<std::size_t>(channel) * distance;
}

const std::int16_t* PcmBuffer::int16Channel(int channel) const {
  if (format_.sample != AudioFormat::Sample::int16) return nullptr;
  const auto distance = format_.isInterleaved ? 1 : frameCapacity_;
  return reinterpret_cast<const std::int16_t*>(bytes_) +
         static_cast<std::size_t>(channel) * distance;
}

std::size_t PcmBuffer::stride() const {
  return format_.isInterleaved ? static_cast<std::size_t>(format_.channelCount) : 1;
}

}  // namespace velun
