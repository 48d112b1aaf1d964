// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/audio_converter.h"

#include "audio/channel_mix.h"

#include <algorithm>
#include <soxr.h>

namespace velun {

namespace {

// Far above what a sound card does, far below what would make a filter of gigabytes.
constexpr double kHighestRate = 3'072'000;
constexpr int kMostChannels = 256;

bool isUsable(const AudioFormat& format) {
  return format.sampleRate >= 1 && format.sampleRate <= kHighestRate && format.channelCount >= 1 &&
         format.channelCount <= kMostChannels;
}

/// For equal rates: hands out what came in.
class PassingConverter final : public AudioConverter {
 public:
  PassingConverter(const AudioFormat& from, const AudioFormat& to) : AudioConverter(from, to) {}

 private:
  bool push(std::span<const float> samples) override {
    waiting_.insert(waiting_.end(), samples.begin(), samples.end());
    return true;
  }
  bool finish() override { return true; }
  std::ptrdiff_t pull(float* output, std::size_t capacity) override {
    const auto channels = std::size_t(outputFormat().channelCount);
    const std::size_t frames = std::min(capacity, waiting_.size() / channels);
    const auto end = waiting_.begin() + std::ptrdiff_t(frames * channels);
    std::copy(waiting_.begin(), end, output);
    waiting_.erase(waiting_.begin(), end);
    return std::ptrdiff_t(frames);
  }

  std::vector<float> waiting_;
};

/// For different rates. soxr takes any input and keeps what it cannot hand out yet.
class ResamplingConverter final : public AudioConverter {
 public:
  ResamplingConverter(const AudioFormat& from, const AudioFormat& to) : AudioConverter(from, to) {
    const soxr_io_spec_t samples = soxr_io_spec(SOXR_FLOAT32_I, SOXR_FLOAT32_I);
    const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_HQ, 0);
    const soxr_runtime_spec_t oneThread = soxr_runtime_spec(1);
    soxr_error_t error = nullptr;
    soxr_ = soxr_create(from.sampleRate, to.sampleRate, unsigned(to.channelCount), &error, &samples,
                        &quality, &oneThread);
  }
  ~ResamplingConverter() override { soxr_delete(soxr_); }

  bool isReady() const { return soxr_ != nullptr; }

 private:
  // Without a place for the number of frames taken, soxr takes them all.
  bool push(std::span<const float> samples) override {
    const std::size_t frames = samples.size() / std::size_t(outputFormat().channelCount);
    std::size_t made = 0;
    float none = 0;
    return !soxr_process(soxr_, samples.data(), frames, nullptr, &none, 0, &made);
  }
  bool finish() override {
    float none = 0;
    return !soxr_process(soxr_, nullptr, 0, nullptr, &none, 0, nullptr);
  }
  std::ptrdiff_t pull(float* output, std::size_t capacity) override {
    static constexpr float noInput = 0;
    std::size_t made = 0;
    if (soxr_process(soxr_, &noInput, 0, nullptr, output, capacity, &made)) return -1;
    return std::ptrdiff_t(made);
  }

  soxr_t soxr_ = nullptr;
};

}  // namespace

AudioConverter::~AudioConverter() = default;

std::unique_ptr<AudioConverter> AudioConverter::make(const AudioFormat& from,
                                                     const AudioFormat& to) {
  if (!isUsable(from) || !isUsable(to)) return nullptr;
  if (from.sampleRate == to.sampleRate) return std::make_unique<PassingConverter>(from, to);
  auto converter = std::make_unique<ResamplingConverter>(from, to);
  return converter->isReady() ? std::move(converter) : nullptr;
}

AudioConverter::OutputStatus AudioConverter::convert(PcmBuffer& output, const InputBlock& input) {
  output.setFrameLength(0);
  if (output.format() != to_) return OutputStatus::error;
  for (;;) {
    // Asked before anything is handed out: what is still inside may fill the output, and a buffer
    // that was offered for this call must not be lost.
    InputStatus status = InputStatus::noDataNow;
    const PcmBuffer* buffer = input(status);
    const bool hasBuffer = status == InputStatus::haveData && buffer;
    if (hasBuffer && !pushBuffer(*buffer)) return OutputStatus::error;
    if (status == InputStatus::endOfStream && !finish()) return OutputStatus::error;

    if (!pullInto(output)) return OutputStatus::error;
    if (output.frameLength() == output.frameCapacity()) return OutputStatus::haveData;
    if (status == InputStatus::endOfStream) {
      return output.frameLength() > 0 ? OutputStatus::haveData : OutputStatus::endOfStream;
    }
    if (!hasBuffer) return OutputStatus::inputRanDry;
  }
}

bool AudioConverter::pushBuffer(const PcmBuffer& buffer) {
  if (buffer.format() != from_) return false;
  const std::size_t count = buffer.frameLength() * std::size_t(to_.channelCount);
  if (mixed_.size() < count) mixed_.resize(count);
  const std::span<float> samples = std::span(mixed_).first(count);
  mixChannels(buffer, to_.channelCount, samples);
  return push(samples);
}

/// Appends to `output`.
bool AudioConverter::pullInto(PcmBuffer& output) {
  const std::size_t start = output.frameLength();
  const std::size_t room = output.frameCapacity() - start;
  const auto channels = std::size_t(to_.channelCount);
  const bool isPlain = to_.isInterleaved || channels == 1;
  std::ptrdiff_t made = 0;
  if (isPlain && to_.sample == AudioFormat::Sample::float32) {
    made = pull(reinterpret_cast<float*>(output.mutableBytes()) + start * channels, room);
  } else {
    if (converted_.size() < room * channels) converted_.resize(room * channels);
    made = pull(converted_.data(), room);
    if (made > 0) {
      storeFrames(std::span<const float>(converted_).first(std::size_t(made) * channels), output);
    }
  }
  if (made > 0) output.setFrameLength(start + std::size_t(made));
  return made >= 0;
}

}  // namespace velun
