// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/model_state.h"

#include <algorithm>
#include <cmath>

namespace velun {

namespace {

using Stage = ModelState::Stage;

Stage combinedStage(const std::vector<ModelState>& states) {
  for (const Stage stage : {Stage::failed, Stage::downloading, Stage::verifying, Stage::waiting,
                            Stage::paused, Stage::absent}) {
    if (std::ranges::count(states, stage, &ModelState::stage) > 0) return stage;
  }
  return Stage::installed;
}

}  // namespace

ModelState combined(const std::vector<ModelState>& states) {
  ModelState all;
  all.stage = combinedStage(states);
  for (const ModelState& state : states) {
    all.doneBytes += state.doneBytes;
    all.totalBytes += state.totalBytes;
    all.bytesPerSecond += state.bytesPerSecond;
    if (all.failure.isEmpty()) all.failure = state.failure;
  }
  if (all.bytesPerSecond > 0) {
    const auto missing = static_cast<double>(all.totalBytes - all.doneBytes);
    all.secondsLeft = static_cast<int>(std::ceil(missing / all.bytesPerSecond));
  }
  return all;
}

}  // namespace velun
