// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/audio_backlog.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

namespace velun {

namespace {

/// Seconds. A buffer may be long, and the next update comes with the next buffer.
constexpr double kBufferReserve = 0.75;
/// A machine that decodes half as fast again as the audio plays catches up in the end. Seconds of
/// audio by second.
constexpr double kCatchUpSpeed = 0.5;
/// Seconds. Audio that is older when the recognizer is loaded is of no interest any more.
constexpr double kMaxPendingAtLoad = 30;
/// Seconds. A second skip within this time: the machine cannot keep up.
constexpr double kTooSlowPeriod = 60;

/// Seconds. The skipped part begins at the quietest place of the first part that waits, and ends at
/// the quietest place of the last part.
constexpr double kBeginWindow = 0.5;
constexpr double kEndWindow = 1.0;
constexpr double kMinKept = 0.3;

/// 10 ms, and the shortest gap between two words.
constexpr std::size_t kFrame = kSpeechSampleRate / 100;
constexpr std::size_t kGapFrames = 8;

std::size_t samplesOf(double seconds) {
  return static_cast<std::size_t>(seconds * kSpeechSampleRate);
}

float energy(const std::vector<float>& samples, std::size_t at) {
  float sum = 0;
  for (std::size_t i = at; i < at + kFrame; ++i) sum += samples[i] * samples[i];
  return sum;
}

/// The middle of the quietest gap in [begin, end), in samples; its first part if several are equal.
std::size_t quietestPlace(const std::vector<float>& samples, std::size_t begin, std::size_t end) {
  std::vector<float> energies;
  for (std::size_t at = begin; at + kFrame <= end; at += kFrame) {
    energies.push_back(energy(samples, at));
  }
  float quietest = std::numeric_limits<float>::infinity();
  std::size_t place = begin;
  for (std::size_t i = 0; i + kGapFrames <= energies.size(); ++i) {
    const auto first = energies.begin() + static_cast<std::ptrdiff_t>(i);
    const float loudest = *std::max_element(first, first + kGapFrames);
    if (loudest >= quietest) continue;
    quietest = loudest;
    place = begin + (i + kGapFrames / 2) * kFrame;
  }
  return place;
}

SpeechSamples part(const std::vector<float>& samples, std::size_t begin, std::size_t end) {
  return {{samples.begin() + static_cast<std::ptrdiff_t>(begin),
           samples.begin() + static_cast<std::ptrdiff_t>(end)}};
}

}  // namespace

AudioBacklog::AudioBacklog(SpeechInput& input, const Clock& clock) : input_(input), clock_(clock) {}

void AudioBacklog::recognizerLoaded() {
  loadedAt_ = clock_.monotonicSeconds();
  pendingAtLoad_ = std::min(input_.pendingSeconds(), kMaxPendingAtLoad);
}

double AudioBacklog::toleratedSeconds() const {
  const double elapsed = clock_.monotonicSeconds() - loadedAt_;
  return std::max(0.0, pendingAtLoad_ - kCatchUpSpeed * elapsed);
}

AudioBacklog::Update AudioBacklog::update(double undecodedSeconds) {
  const double behind = input_.pendingSeconds() + undecodedSeconds - toleratedSeconds();
  Update update;
  update.isBehind = lag_.update(behind);
  // Nothing is added any more to a stream that has ended.
  if (behind <= kMaxSeconds - kBufferReserve || input_.isFinished()) return update;
  update.skippedSeconds = skipAhead();
  if (update.skippedSeconds > 0) update.isTooSlow = isTooSlow();
  return update;
}

bool AudioBacklog::isTooSlow() {
  const double now = clock_.monotonicSeconds();
  const std::optional<double> before = std::exchange(lastSkip_, now);
  if (!before || now - *before > kTooSlowPeriod || hasReportedTooSlow_) return false;
  hasReportedTooSlow_ = true;
  return true;
}

double AudioBacklog::skipAhead() {
  std::deque<SpeechSamples> waiting = input_.takeAll();
  std::vector<float> all;
  std::optional<std::size_t> gap;
  for (const SpeechSamples& each : waiting) {
    if (each.followsGap && !gap) gap = all.size();
    all.insert(all.end(), each.samples.begin(), each.samples.end());
  }
  const std::size_t endWindow = samplesOf(kEndWindow);
  if (all.size() < samplesOf(kBeginWindow) + endWindow) {
    input_.putBack(std::move(waiting));
    return 0;
  }
  const std::size_t end =
      quietestPlace(all, all.size() - endWindow, all.size() - samplesOf(kMinKept));
  const std::size_t begin =
      gap && *gap < end ? *gap : quietestPlace(all, 0, samplesOf(kBeginWindow));
  std::deque<SpeechSamples> kept{part(all, 0, begin), part(all, end, all.size())};
  const double heardUntil = waiting.back().heardUntil;
  kept.front().heardUntil =
      heardUntil - static_cast<double>(all.size() - begin) / kSpeechSampleRate;
  kept.back().heardUntil = heardUntil;
  kept.back().followsGap = true;
  if (kept.front().samples.empty()) kept.pop_front();
  input_.putBack(std::move(kept));
  return static_cast<double>(end - begin) / kSpeechSampleRate;
}

}  // namespace velun
