// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/speaker_tracker.h"

#include "model/speaker.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace velun {

namespace {

/// Seconds of speech that can bring a new speaker.
constexpr double kMinNewVoice = 3;
/// How much more like another speaker a voice must be than like the last one.
constexpr double kMargin = 0.1;
/// Seconds after which a mean changes no more slowly: voices change with the place and the mood.
constexpr double kMaxWeight = 60;

double dot(const std::vector<float>& left, const std::vector<float>& right) {
  return std::inner_product(left.begin(), left.end(), right.begin(), 0.0);
}

}  // namespace

/// Prints of different models have nothing in common.
double SpeakerTracker::similarity(const Speaker& speaker, const VoicePrint& voice) const {
  if (speaker.sum.size() != voice.values.size()) return -1;
  const double length = std::sqrt(dot(speaker.sum, speaker.sum));
  return length > 0 ? dot(speaker.sum, voice.values) / length : -1;
}

QString SpeakerTracker::next(const VoicePrint& voice) {
  const std::size_t chosen = choose(voice);
  if (chosen == speakers_.size()) {
    const int number = static_cast<int>(speakers_.size()) + 1;
    speakers_.push_back({numberedSpeaker(number), std::vector<float>(voice.values.size()), 0});
  }
  learn(speakers_[chosen], voice);
  last_ = chosen;
  return speakers_[chosen].name;
}

/// The index of the speaker; the number of speakers for a new one.
std::size_t SpeakerTracker::choose(const VoicePrint& voice) const {
  if (speakers_.empty()) return 0;
  std::vector<double> similarities;
  for (const Speaker& each : speakers_) similarities.push_back(similarity(each, voice));
  const auto best = std::ranges::max_element(similarities);
  const auto found = static_cast<std::size_t>(best - similarities.begin());
  if (*best < voice.limits.different && voice.seconds >= kMinNewVoice) return speakers_.size();
  if (*best >= voice.limits.same && *best >= similarities[last_] + kMargin) return found;
  return last_;
}

void SpeakerTracker::learn(Speaker& speaker, const VoicePrint& voice) const {
  // A print that is not of this voice would move its mean.
  if (speaker.seconds > 0 && similarity(speaker, voice) < voice.limits.different) return;
  if (speaker.seconds + voice.seconds > kMaxWeight) {
    const auto scale =
        static_cast<float>(std::max(0.0, kMaxWeight - voice.seconds) / speaker.seconds);
    for (float& value : speaker.sum) value *= scale;
    speaker.seconds *= scale;
  }
  for (std::size_t index = 0; index < voice.values.size(); ++index) {
    speaker.sum[index] += static_cast<float>(voice.seconds) * voice.values[index];
  }
  speaker.seconds += voice.seconds;
}

void SpeakerTracker::rename(const QString& from, const QString& to) {
  if (to.isEmpty()) return;
  for (Speaker& each : speakers_) {
    if (each.name == from) each.name = to;
  }
}

}  // namespace velun
