// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <QString>

namespace velun {

/// Adds case and punctuation to the words of a recognizer that writes neither. Created, used and
/// destroyed on one decode thread.
class PunctuationRestorer {
 public:
  /// Creates one; called on the decode thread that will use it. Throws `Failure`.
  using Factory = std::function<std::unique_ptr<PunctuationRestorer>()>;

  virtual ~PunctuationRestorer() = default;

  /// Loads the model ahead of the first text, which may take a second. Never throws.
  virtual void load() = 0;

  /// Why texts stay unchanged from now on, localized; nullopt while they are restored.
  virtual std::optional<QString> failure() const = 0;

  /// The same words with case and punctuation; "|" and "+" tell that the speaker pauses for a short
  /// or a long time, and stay in the text. The unchanged text on failure.
  /// Takes a few milliseconds, and a few seconds at most when the model hangs; never throws.
  virtual QString restored(const QString& text) = 0;

  /// Makes a running operation return soon. Only destruction follows. Any thread.
  virtual void cancel() = 0;
};

/// Creates punctuation restorers. Main thread.
class PunctuationProvider {
 public:
  virtual ~PunctuationProvider() = default;

  /// A null function when nothing is installed for the locale.
  virtual PunctuationRestorer::Factory punctuationFactory(const QString& locale) const = 0;
};

}  // namespace velun
