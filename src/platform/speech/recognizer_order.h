// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/recognizer_candidate.h"

#include <optional>
#include <vector>

namespace velun {

/// What a machine has for recognizers.
struct Machine {
  int cores = 1;
  std::int64_t memoryBytes = 0;  ///< physical memory; 0 if unknown

  /// The machine that the program runs on.
  static Machine present();
};

/// Whether `machine` can run `candidate` beside the programs that people use, and keep up with
/// speech. `realTimeFactor` is the measured time of decoding per time of audio; without it, the
/// size of the model is compared with the number of cores.
bool isSuitable(const RecognizerCandidate& candidate, const Machine& machine,
                std::optional<double> realTimeFactor);

/// Sorts from first to last use: the chosen one, those that are suitable in the order in which they
/// are given (best first), then the others from the smallest model to the largest.
void sortByUse(std::vector<RecognizerCandidate>& candidates);

}  // namespace velun
