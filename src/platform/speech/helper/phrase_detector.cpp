// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/phrase_detector.h"

#include <algorithm>
#include <bit>
#include <chrono>

namespace velun {

namespace {

using namespace std::chrono_literals;

constexpr std::size_t kFrame = VoiceActivity::kFrameLength;
constexpr std::chrono::milliseconds kFrameTime = 10ms;

constexpr int frames(std::chrono::milliseconds time) {
  return static_cast<int>(time / kFrameTime);
}

/// Audio before the first voice that belongs to the phrase, because words begin softly and because
/// a recognizer needs some background noise first.
constexpr int kLeadFrames = frames(400ms);
/// The number of frames with voice in the last 80 ms that begin a phrase; clicks are shorter.
constexpr int kVoiceToBegin = 5;
constexpr unsigned kRecentMask = 0xFF;
constexpr int kPauseToEnd = frames(600ms);
constexpr int kLongPhrase = frames(8s);
constexpr int kPauseToEndLong = frames(200ms);
constexpr int kMaxPhraseFrames = frames(15s);
/// The part at the end of a phrase without a pause in which it may be cut.
constexpr int kCutWindow = frames(3s);
constexpr int kCutGap = frames(60ms);
/// The minimum of pitched sound in speech, as a duration and as a share of the voiced frames.
constexpr int kMinPitchedFrames = frames(80ms);
constexpr double kMinPitchedShare = 0.15;
/// The minimum standard deviation of the level of speech, in dB.
constexpr double kMinLevelDeviation = 2.5;

}  // namespace

PhraseDetector::Event PhraseDetector::accept(std::span<const float> frame) {
  const bool isVoice = activity_.isVoice(frame);
  samples_.insert(samples_.end(), frame.begin(), frame.end());
  levels_.push_back(activity_.level());
  if (isInPhrase_) return continuePhrase(isVoice);
  recentVoice_ = ((recentVoice_ << 1) | (isVoice ? 1U : 0U)) & kRecentMask;
  if (std::popcount(recentVoice_) >= kVoiceToBegin) {
    begin();
    return Event::began;
  }
  if (levels_.size() > static_cast<std::size_t>(kLeadFrames)) {
    levels_.erase(levels_.begin());
    samples_.erase(samples_.begin(), samples_.begin() + kFrame);
  }
  return Event::none;
}

PhraseDetector::Event PhraseDetector::continuePhrase(bool isVoice) {
  const int length = static_cast<int>(levels_.size());
  if (isVoice) {
    ++voicedFrames_;
    if (activity_.isPitched()) ++pitchedFrames_;
    levelSum_ += activity_.level();
    levelSquares_ += static_cast<double>(activity_.level()) * activity_.level();
    silentFrames_ = 0;
    if (length >= kMaxPhraseFrames) {
      cut_ = quietestPlace() * kFrame;
      isInPhrase_ = false;
      mayGoOn_ = true;
      return Event::ended;
    }
    return Event::none;
  }
  ++silentFrames_;
  const int pauseToEnd = length >= kLongPhrase ? kPauseToEndLong : kPauseToEnd;
  if (silentFrames_ >= pauseToEnd) {
    end();
    mayGoOn_ = silentFrames_ < kPauseToEnd;
    return Event::ended;
  }
  return Event::none;
}

bool PhraseDetector::end() {
  if (!isInPhrase_) return false;
  isInPhrase_ = false;
  mayGoOn_ = false;
  cut_ = samples_.size();
  return true;
}

std::vector<float> PhraseDetector::takePhrase() {
  std::vector<float> phrase(samples_.begin(), samples_.begin() + static_cast<std::ptrdiff_t>(cut_));
  const bool wasCut = cut_ < samples_.size();
  samples_.erase(samples_.begin(), samples_.begin() + static_cast<std::ptrdiff_t>(cut_));
  levels_.erase(levels_.begin(), levels_.begin() + static_cast<std::ptrdiff_t>(cut_ / kFrame));
  recentVoice_ = 0;
  if (wasCut) begin();
  return phrase;
}

bool PhraseDetector::isLikelySpeech() const {
  if (pitchedFrames_ < kMinPitchedFrames || pitchedFrames_ < kMinPitchedShare * voicedFrames_) {
    return false;
  }
  const double mean = levelSum_ / voicedFrames_;
  return levelSquares_ / voicedFrames_ - mean * mean > kMinLevelDeviation * kMinLevelDeviation;
}

double PhraseDetector::voicedSeconds() const {
  return std::chrono::duration<double>(voicedFrames_ * kFrameTime).count();
}

double PhraseDetector::closingPause() const {
  return std::chrono::duration<double>(silentFrames_ * kFrameTime).count();
}

std::size_t PhraseDetector::quietestPlace() const {
  const int length = static_cast<int>(levels_.size());
  float quietest = 0;
  int place = length;
  for (int i = length - kCutWindow; i + kCutGap <= length; ++i) {
    const auto first = levels_.begin() + i;
    const float loudest = *std::max_element(first, first + kCutGap);
    if (loudest < quietest) {
      quietest = loudest;
      place = i + kCutGap / 2;
    }
  }
  return static_cast<std::size_t>(place);
}

void PhraseDetector::begin() {
  isInPhrase_ = true;
  silentFrames_ = 0;
  voicedFrames_ = 0;
  pitchedFrames_ = 0;
  levelSum_ = 0;
  levelSquares_ = 0;
  recentVoice_ = 0;
}

}  // namespace velun
