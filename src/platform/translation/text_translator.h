// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <stop_token>

namespace velun {

/// Translates in one direction. Used by one thread at a time, the pool's.
class TextTranslator {
 public:
  virtual ~TextTranslator() = default;

  /// Loads what `translate` needs, so that the first text does not wait. Throws `Failure`.
  virtual void load() = 0;

  /// The translation of a text with letters or numbers. Calls `load` first if that was not done.
  /// Throws `Failure` with a text for the user, after which the next text may succeed, or
  /// `Cancelled` soon after a stop request.
  virtual QString translate(const QString& text, std::stop_token stop) = 0;
};

}  // namespace velun
