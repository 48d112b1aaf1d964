// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/speech_recognition_event.h"
#include "captions/speaker_tracker.h"
#include "model/line.h"

#include <vector>

namespace velun {

/// The lines that a finished text becomes, one a sentence. `now` is when it was finished. The time
/// in which the text was said is shared among its sentences by their lengths, and counted from
/// `sessionStart`. If its voice is known, `speakers` tells whose it is.
std::vector<Line> finishedLines(const FinalEvent& event, Instant now, Instant sessionStart,
                                SpeakerTracker& speakers);

}  // namespace velun
