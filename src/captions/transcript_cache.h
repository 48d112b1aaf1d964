// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/line.h"
#include "model/transcript_content.h"

#include <QString>
#include <vector>

namespace velun {

/// The bare transcript of a growing list of lines, the same text as `CaptionSession::transcript`,
/// of which only what follows the first changed line is put together again.
class TranscriptCache {
 public:
  const QString& text(const std::vector<Line>& lines, TranscriptContent content,
                      const QString& language);

  /// The line at that index has another translation than before.
  void lineChanged(std::size_t index);

  /// Other lines follow.
  void reset();

 private:
  TranscriptContent content_ = TranscriptContent::both;
  QString language_;
  QString text_;
  /// The length of the text up to and with each line.
  std::vector<qsizetype> ends_;
};

}  // namespace velun
