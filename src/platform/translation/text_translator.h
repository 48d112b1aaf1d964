// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <stop_token>

namespace velun {

/// Translates in one direction. Used by one thread at a time, the translation worker.
class TextTranslator {
 public:
  virtual ~TextTranslator() = default;

  /// Makes it ready, so that the first text does not wait. Throws `Failure`.
  virtual void load() = 0;

  /// The translation of a text that has letters or numbers. Loads first when that was not done.
  /// Throws `Failure` with a text to show, after which the next text may well succeed, or
  /// `Cancelled` soon after a stop was requested.
  virtual QString translate(const QString& text, std::stop_token stop) = 0;
};

}  // namespace velun
