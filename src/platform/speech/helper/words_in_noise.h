// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/transcription_result.h"

#include <vector>

namespace velun {

/// Whether there is nothing but vocal sounds such as "oh", and articles, or no word. Strings and
/// noises become them; of 269 phrases of real speech none was like that.
bool areMeaningless(const std::vector<RecognizedWord>& words);

/// Whether the words of a phrase are likely to be noise or music: meaningless, or too few or
/// too short words for its seconds of voice.
bool areWordsInNoise(const std::vector<RecognizedWord>& words, double voicedSeconds);

}  // namespace velun
