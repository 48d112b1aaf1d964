// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <QString>

namespace velun {

/// Puts case and punctuation on the words of a recognizer that writes neither. Made, used and
/// destroyed on one decode worker.
class PunctuationRestorer {
 public:
  /// Makes one; called on the decode worker that will use it. Throws `Failure`.
  using Factory = std::function<std::unique_ptr<PunctuationRestorer>()>;

  virtual ~PunctuationRestorer() = default;

  /// Makes it ready, which may take a second: the first text then does not wait. Never throws.
  virtual void load() = 0;

  /// The same words with case and punctuation. Takes a few milliseconds. When it cannot be done the
  /// text comes back as it was; never throws.
  virtual QString restored(const QString& text) = 0;

  /// Nothing is wanted any more: an operation under way returns soon. Any thread.
  virtual void cancel() = 0;
};

/// Says whether punctuation can be restored. Main thread.
class PunctuationProvider {
 public:
  virtual ~PunctuationProvider() = default;

  /// A null function when nothing is installed for the locale.
  virtual PunctuationRestorer::Factory punctuationFactory(const QString& locale) const = 0;
};

}  // namespace velun
