// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/silence_meter.h"

namespace velun {

void SilenceMeter::add(std::span<const float> samples) {
  constexpr std::size_t kFrame = VoiceActivity::kFrameLength;
  constexpr double kFrameSeconds = kFrame / 16000.0;
  partialFrame_.insert(partialFrame_.end(), samples.begin(), samples.end());
  const std::span<const float> all(partialFrame_);
  std::size_t used = 0;
  for (; used + kFrame <= all.size(); used += kFrame) {
    const bool isVoice = activity_.isVoice(all.subspan(used, kFrame));
    seconds_ = isVoice ? 0 : seconds_ + kFrameSeconds;
  }
  partialFrame_.erase(partialFrame_.begin(),
                      partialFrame_.begin() + static_cast<std::ptrdiff_t>(used));
}

}  // namespace velun
