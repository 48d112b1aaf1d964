// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/audio_feeder.h"

#include <algorithm>
#include <cstdint>
#include <exception>
#include <limits>
#include <QtGlobal>
#include <utility>

namespace velun {

namespace {

// The converter hands out in bursts; this many frames let it catch up within one buffer.
constexpr std::size_t kSpareFrames = 16;

}  // namespace

AudioFeeder::AudioFeeder(const AudioFormat& format, std::shared_ptr<AnalyzerInputStream> input,
                         const Clock& clock)
    : format_(format),
      input_(std::move(input)),
      clock_(clock),
      lastFeed_(clock.monotonicSeconds()) {}

void AudioFeeder::feed(const PcmBuffer& buffer) noexcept {
  lastFeed_.store(clock_.monotonicSeconds(), std::memory_order_relaxed);
  try {
    convertAndSend(buffer);
  } catch (const std::exception&) {
    // Out of memory: this buffer is lost, the capture thread lives on.
  }
}

std::vector<float> AudioFeeder::bands() const {
  const std::lock_guard lock(bandsLock_);
  if (!hasBands_) return {};
  return {latestBands_.begin(), latestBands_.end()};
}

std::size_t AudioFeeder::outputCapacity(std::size_t frameLength, double sampleRate) const {
  const double frames = format_.sampleRate * double(frameLength) / sampleRate;
  Q_ASSERT(frames + double(kSpareFrames) <= std::numeric_limits<std::uint32_t>::max());
  return static_cast<std::size_t>(frames) + kSpareFrames;
}

void AudioFeeder::convertAndSend(const PcmBuffer& buffer) {
  if (!converter_ || converter_->inputFormat() != buffer.format()) {
    converter_ = AudioConverter::make(buffer.format(), format_);
    if (!converter_) return;
  }
  PcmBuffer output(format_, outputCapacity(buffer.frameLength(), buffer.format().sampleRate));
  const PcmBuffer* next = &buffer;
  // The stream never ends here, so the converter keeps its state between buffers.
  const auto status = converter_->convert(output, [&next](AudioConverter::InputStatus& input) {
    input = next ? AudioConverter::InputStatus::haveData : AudioConverter::InputStatus::noDataNow;
    return std::exchange(next, nullptr);
  });
  if (status == AudioConverter::OutputStatus::error || output.frameLength() == 0) return;
  measure(output);
  hasFedAudio_.store(true, std::memory_order_relaxed);
  input_->yield({std::move(output)});
}

void AudioFeeder::measure(const PcmBuffer& converted) {
  spectrum_.append(converted);
  const std::span<const float> levels = spectrum_.bands();
  if (levels.empty()) return;
  const std::lock_guard lock(bandsLock_);
  std::copy(levels.begin(), levels.end(), latestBands_.begin());
  hasBands_ = true;
}

}  // namespace velun
