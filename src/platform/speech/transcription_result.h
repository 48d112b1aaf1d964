// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// The text of one phrase: a draft that may change, or final.
struct TranscriptionResult {
  QString text;
  bool isFinal = false;

  bool operator==(const TranscriptionResult&) const = default;
};

}  // namespace velun
