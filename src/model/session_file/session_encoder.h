// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <QByteArray>
#include <QUuid>
#include <set>
#include <vector>

namespace velun {

/// An encoder that keeps the bytes of lines that did not change, so that writing a long session
/// again after one new line or translation costs little more than a copy. The result is always
/// the same, byte for byte, as `encodeSession`.
///
/// It trusts its owner: lines are only appended, and a line that changed is named to `lineChanged`.
/// A session with another id, or with fewer lines, is encoded from nothing.
class SessionEncoder {
 public:
  /// The session file's bytes.
  const QByteArray& encode(const CaptionSession& session);

  /// The line at that index has other contents than at the last `encode`.
  void lineChanged(std::size_t index);

  /// Forgets everything: another session follows.
  void reset();

 private:
  qsizetype startOf(std::size_t line) const;
  void encodeHead(const CaptionSession& session);
  /// Appends the lines from `first` on and the tail; unchanged lines come from `old`, in which
  /// they end at `oldEnds`.
  void appendFrom(const CaptionSession& session, std::size_t first, const QByteArray& old,
                  const std::vector<qsizetype>& oldEnds);

  QUuid sessionId_;
  QByteArray bytes_;
  qsizetype headSize_ = 0;
  /// Where each line ends in `bytes_`, counted from the end of the head.
  std::vector<qsizetype> ends_;
  std::set<std::size_t> changed_;
};

}  // namespace velun
