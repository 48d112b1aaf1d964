// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"
#include "model/subtitles/cue_text.h"

#include <chrono>

namespace velun {

/// One caption of a subtitle file.
struct SubtitleCue {
  /// Since the session's start. `end` is 1 to 7 s after `start`.
  std::chrono::milliseconds start;
  std::chrono::milliseconds end;
  /// One or two.
  CueRows rows;
};

/// The captions of a session in the order of time, none over another. With `both`, each has a row
/// of the original and one of the translation. Of several translations, the one in `language` is
/// taken, or the first if it is absent.
///
/// The times are the recognizer's where a line has them. Otherwise a line ends when it was finished
/// and began as much earlier as its words take to say; a line without any time follows the one
/// before.
std::vector<SubtitleCue> subtitleCues(const CaptionSession& session, TranscriptContent content,
                                      const std::optional<QString>& language);

}  // namespace velun
