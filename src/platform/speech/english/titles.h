// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/english/caption_word.h"

namespace velun {

/// Writes "mr", "mrs", "ms", "dr" and "jr", which recognizers give without a full stop, as people
/// write them: "Mr. Hale". "ms" stays a unit unless a name follows.
CaptionWords writeTitles(CaptionWords words);

}  // namespace velun
