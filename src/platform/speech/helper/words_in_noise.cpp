// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/words_in_noise.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <QStringView>

namespace velun {

namespace {

constexpr std::array<QStringView, 14> kMeaningless = {u"a",   u"ah",  u"eh", u"er", u"hm",
                                                      u"hmm", u"huh", u"mm", u"oh", u"ooh",
                                                      u"ow",  u"the", u"uh", u"um"};

/// Speech has at least one word in two seconds. A longer sound with fewer words is noise or music.
constexpr double kLongSound = 3.0;
constexpr double kMinWordsPerSecond = 0.6;
/// The minimum share of the voice that the words take. Plucked strings became a "yeah" of 0.1 s;
/// of 269 phrases of real speech, three had a smaller share, and all their words were wrong.
constexpr double kMinShare = 0.2;

}  // namespace

bool areMeaningless(const std::vector<RecognizedWord>& words) {
  return std::all_of(words.begin(), words.end(), [](const RecognizedWord& word) {
    return std::find(kMeaningless.begin(), kMeaningless.end(), word.text) != kMeaningless.end();
  });
}

bool areWordsInNoise(const std::vector<RecognizedWord>& words, double voicedSeconds) {
  const double seconds = std::accumulate(
      words.begin(), words.end(), 0.0,
      [](double all, const RecognizedWord& word) { return all + (word.end - word.start); });
  const auto count = static_cast<double>(words.size());
  return areMeaningless(words) || seconds < kMinShare * voicedSeconds ||
         (voicedSeconds > kLongSound && count < kMinWordsPerSecond * voicedSeconds);
}

}  // namespace velun
