// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_file/session_encoder.h"

#include "model/session_file/json_writer.h"
#include "model/session_file/session_writer.h"

namespace velun {

const QByteArray& SessionEncoder::encode(const CaptionSession& session) {
  if (session.id != sessionId_ || session.lines.size() < ends_.size()) reset();
  sessionId_ = session.id;

  // The bytes before the first changed line stay in place. Those behind it are assembled again
  // from old and new ones.
  const std::size_t held = ends_.size();
  const std::size_t kept = changed_.empty() ? held : *changed_.begin();
  const qsizetype keptEnd = kept == 0 ? 0 : ends_[kept - 1];
  const qsizetype oldStart = startOf(kept);
  const QByteArray old =
      kept < held ? bytes_.mid(headSize_ + oldStart, ends_.back() - oldStart) : QByteArray();
  std::vector<qsizetype> oldEnds(ends_.begin() + static_cast<std::ptrdiff_t>(kept), ends_.end());
  for (qsizetype& end : oldEnds) end -= oldStart;

  bytes_.resize(headSize_ + keptEnd);
  ends_.resize(kept);
  encodeHead(session);

  appendFrom(session, kept, old, oldEnds);
  changed_.clear();
  return bytes_;
}

void SessionEncoder::appendFrom(const CaptionSession& session, std::size_t first,
                                const QByteArray& old, const std::vector<qsizetype>& oldEnds) {
  JsonWriter json(bytes_);
  qsizetype from = 0;
  for (std::size_t i = first; i < session.lines.size(); ++i) {
    if (i > 0) json.raw(kLineSeparator);
    const bool isOld = i - first < oldEnds.size();
    const qsizetype to = isOld ? oldEnds[i - first] : 0;
    if (isOld && !changed_.contains(i)) {
      json.raw({old.constData() + from, static_cast<std::size_t>(to - from)});
    } else {
      appendSessionLine(json, session.lines[i]);
    }
    from = to + static_cast<qsizetype>(kLineSeparator.size());
    ends_.push_back(json.size() - headSize_);
  }
  appendSessionTail(json, session);
}

void SessionEncoder::lineChanged(std::size_t index) {
  if (index < ends_.size()) changed_.insert(index);
}

void SessionEncoder::reset() {
  *this = SessionEncoder();
}

qsizetype SessionEncoder::startOf(std::size_t line) const {
  return line == 0 ? 0 : ends_[line - 1] + static_cast<qsizetype>(kLineSeparator.size());
}

void SessionEncoder::encodeHead(const CaptionSession& session) {
  QByteArray head;
  {
    JsonWriter json(head);
    appendSessionHead(json, session);
  }
  if (bytes_.startsWith(head) && head.size() == headSize_) return;
  bytes_.replace(0, headSize_, head);
  headSize_ = head.size();
}

}  // namespace velun
