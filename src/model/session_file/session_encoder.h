// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <QByteArray>
#include <QUuid>
#include <set>
#include <vector>

namespace velun {

/// Encodes a growing session again and again. It keeps the bytes of unchanged lines, so encoding a
/// long session after one new line or translation costs little more than a copy. The result equals
/// that of `encodeSession`, byte for byte.
///
/// The owner must only append lines and must report each changed line to `lineChanged`. A session
/// with another id or with fewer lines is encoded completely.
class SessionEncoder {
 public:
  /// The session file's bytes.
  const QByteArray& encode(const CaptionSession& session);

  /// Call this when the line at `index` has changed since the last `encode`.
  void lineChanged(std::size_t index);

  /// Discards the kept bytes; another session follows.
  void reset();

 private:
  qsizetype startOf(std::size_t line) const;
  void encodeHead(const CaptionSession& session);
  /// Appends the lines from `first` on and the tail. Unchanged lines are copied from `old`, in
  /// which line `first + i` ends at `oldEnds[i]`.
  void appendFrom(const CaptionSession& session, std::size_t first, const QByteArray& old,
                  const std::vector<qsizetype>& oldEnds);

  QUuid sessionId_;
  QByteArray bytes_;
  qsizetype headSize_ = 0;
  /// The end of each line in `bytes_`, counted from the end of the head.
  std::vector<qsizetype> ends_;
  std::set<std::size_t> changed_;
};

}  // namespace velun
