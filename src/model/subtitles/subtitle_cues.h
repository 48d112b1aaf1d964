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

/// Makes the captions of a subtitle file, line by line in the order of time; none is over another.
///
/// Where another speaker begins, the caption begins with the name.
///
/// The times are the recognizer's where a line has them. Otherwise a line ends when it was finished
/// and began as much earlier as its words take to say; a line without any time follows the one
/// before.
class SubtitleTimeline {
 public:
  /// With `both`, each caption has a row of the original and one of the translation. Of several
  /// translations, the one in `language` is taken, or the first if it is absent.
  SubtitleTimeline(Instant sessionStart, TranscriptContent content,
                   std::optional<QString> language);

  /// Adds a line. Returns the captions whose times are settled by that: those of the line before.
  std::vector<SubtitleCue> add(const Line& line);

  /// The same with a name before the line's texts, unless it is empty.
  std::vector<SubtitleCue> add(const Line& line, const QString& name);

  /// The captions of the last line.
  std::vector<SubtitleCue> finish();

 private:
  struct Span {
    std::chrono::milliseconds start;
    std::chrono::milliseconds end;
  };

  Span spanOf(const Line& line) const;
  std::vector<CueRows> rowsOf(const Line& line, std::chrono::milliseconds duration) const;
  /// Empty if it is the same as of the line before.
  QString newSpeaker(const Line& line);
  std::vector<SubtitleCue> settle(std::chrono::milliseconds next);

  Instant sessionStart_;
  TranscriptContent content_;
  std::optional<QString> language_;
  /// Of the last line whose speaker is known.
  std::optional<QString> speaker_;
  /// The end of the last line.
  std::chrono::milliseconds said_{0};
  /// The end of the last settled caption.
  std::chrono::milliseconds shown_{0};
  /// Of the last line.
  std::vector<SubtitleCue> unsettled_;
};

/// The captions of a session.
std::vector<SubtitleCue> subtitleCues(const CaptionSession& session, TranscriptContent content,
                                      const std::optional<QString>& language);

}  // namespace velun
