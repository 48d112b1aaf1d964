// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/transcript_cache.h"

#include "model/renderings.h"

namespace velun {

const QString& TranscriptCache::text(const CaptionSession& session, TranscriptContent content,
                                     const QString& language) {
  if (content != content_ || language != language_) {
    reset();
    content_ = content;
    language_ = language;
  }
  const std::vector<Line>& lines = session.lines;
  for (std::size_t index = ends_.size(); index < lines.size(); ++index) {
    const QString added =
        session.named(lines[index], renderTranscript(lines[index], content, language));
    if (!added.isEmpty() && !text_.isEmpty()) text_.append(QLatin1String("\n\n"));
    text_.append(added);
    ends_.push_back(text_.size());
  }
  return text_;
}

void TranscriptCache::lineChanged(std::size_t index) {
  if (index >= ends_.size()) return;
  text_.truncate(index == 0 ? 0 : ends_[index - 1]);
  ends_.resize(index);
}

void TranscriptCache::reset() {
  text_.clear();
  ends_.clear();
}

}  // namespace velun
