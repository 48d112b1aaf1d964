// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/recognizer_provider.h"
#include "recognition/clips.h"
#include "recognition/word_errors.h"

#include <QStringList>
#include <vector>

namespace velun::bench {

/// The results of one pass over some clips.
struct Outcome {
  WordErrors words;
  /// By clip, in their order.
  std::vector<WordErrors> clipErrors;
  /// The recognized texts by clip.
  QStringList clipTexts;
  /// The number of all recognized words.
  int recognizedWords = 0;
  double audioSeconds = 0;
  double wallSeconds = 0;
  double cpuSeconds = 0;
  /// From the first speech of a clip to its first draft, and from its last speech to its last
  /// final result, in seconds; only in real time.
  std::vector<double> firstDraftDelays;
  std::vector<double> finalDelays;
  int shownWords = 0;
  int changedWords = 0;
  double residentMegabytes = 0;
  /// The cores that the busiest clip took, its pause included.
  double mostCores = 0;
};

enum class Pace { asFastAsPossible, realTime };

/// Sends the clips, with a pause after each, through the feeder and a run on the provider's
/// recognizer, and prints a line for each when `isVerbose`. Needs a running application object.
Outcome recognise(RecognizerProvider& provider, const QString& locale,
                  const std::vector<Clip>& clips, Pace pace, bool isVerbose);

/// The value below which `share` of the values lie.
double percentile(std::vector<double> values, double share);

}  // namespace velun::bench
