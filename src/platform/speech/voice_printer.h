// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/voice_print.h"

#include <memory>
#include <optional>
#include <QString>
#include <span>

namespace velun {

/// Describes voices with a speaker model. Used by one thread at a time.
class VoicePrinter {
 public:
  virtual ~VoicePrinter() = default;

  /// The voice in 16 kHz mono samples in −1…1; nullopt if it cannot be described. Takes a few
  /// hundredths of their length; the first call also loads the model. Never throws.
  virtual std::optional<VoicePrint> print(std::span<const float> samples) = 0;

  /// Why there are no more prints, localized; nullopt while there are.
  virtual std::optional<QString> failure() const { return std::nullopt; }

  /// Makes a running call and every later one return soon. Any thread.
  virtual void cancel() = 0;
};

/// Makes voice printers. Main thread.
class VoiceProvider {
 public:
  virtual ~VoiceProvider() = default;

  /// Null if speakers are not to be told apart, or no speaker model is installed.
  virtual std::unique_ptr<VoicePrinter> makePrinter() = 0;
};

}  // namespace velun
