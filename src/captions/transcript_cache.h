// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <QString>
#include <vector>

namespace velun {

/// The transcript of a growing list of lines, the same text as `CaptionSession::transcript`. Only
/// the part from the first changed line on is rendered again.
class TranscriptCache {
 public:
  const QString& text(const CaptionSession& session, TranscriptContent content,
                      const QString& language);

  /// The text or the translations of the line at `index` have changed.
  void lineChanged(std::size_t index);

 private:
  void reset();

  TranscriptContent content_ = TranscriptContent::both;
  QString language_;
  QString text_;
  /// For each line, the length of the text up to its end.
  std::vector<qsizetype> ends_;
};

}  // namespace velun
