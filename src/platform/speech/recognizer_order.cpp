// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/recognizer_order.h"

#include <algorithm>
#include <thread>
#include <tuple>
#include <unistd.h>

namespace velun {

namespace {

/// A model that takes more than this share of the memory would push other programs out of it.
constexpr double kMaxMemoryShare = 0.4;
/// Decoding that takes longer than this share of real time falls behind whenever another program
/// is busy.
constexpr double kMaxRealTimeFactor = 0.7;
/// The work for a second of audio grows with the size of the model. A model of 650 MB took 0.4 to
/// 1.1 of real time on two to four desktop cores, models of 70 to 150 MB 0.03 to 0.1 on one.
constexpr std::int64_t kModelBytesPerCore = 160'000'000;

}  // namespace

Machine Machine::present() {
  const auto pages = static_cast<std::int64_t>(::sysconf(_SC_PHYS_PAGES));
  return {.cores = std::max(1, static_cast<int>(std::thread::hardware_concurrency())),
          .memoryBytes = std::max<std::int64_t>(pages, 0) * ::sysconf(_SC_PAGESIZE)};
}

bool isSuitable(const RecognizerCandidate& candidate, const Machine& machine,
                std::optional<double> realTimeFactor) {
  const double memory = kMaxMemoryShare * static_cast<double>(machine.memoryBytes);
  if (machine.memoryBytes > 0 && static_cast<double>(candidate.memoryBytes) > memory) return false;
  if (realTimeFactor) return *realTimeFactor <= kMaxRealTimeFactor;
  const std::int64_t cores = (candidate.modelBytes + kModelBytesPerCore / 2) / kModelBytesPerCore;
  return cores <= machine.cores;
}

void sortByUse(std::vector<RecognizerCandidate>& candidates) {
  const auto rank = [](const RecognizerCandidate& candidate) {
    const bool isLast = !candidate.isChosen && !candidate.isSuitable;
    return std::tuple(!candidate.isChosen, isLast, isLast ? candidate.modelBytes : 0);
  };
  std::stable_sort(candidates.begin(), candidates.end(),
                   [&rank](const auto& a, const auto& b) { return rank(a) < rank(b); });
}

}  // namespace velun
