// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <QByteArray>
#include <QUuid>
#include <vector>

namespace velun {

/// An encoder that keeps the bytes of lines that did not change, so that writing a long session
/// again after one new line or translation costs little more than a copy. The result is always
/// the same, byte for byte, as `encodeSession`.
///
/// It trusts its owner: lines are only appended, and a line that changed is named to `lineChanged`.
class SessionEncoder {
 public:
  /// The session file's bytes.
  const QByteArray& encode(const CaptionSession& session);

  /// The line at that index has other contents than at the last `encode`.
  void lineChanged(std::size_t index);

  /// Forgets everything: another session follows.
  void reset();
};

}  // namespace velun
