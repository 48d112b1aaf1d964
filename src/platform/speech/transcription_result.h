// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// One answer of a transcriber: the phrase so far, or the phrase as it stays.
struct TranscriptionResult {
  QString text;
  bool isFinal = false;

  bool operator==(const TranscriptionResult&) const = default;
};

}  // namespace velun
