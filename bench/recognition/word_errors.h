// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

namespace velun::bench {

/// Errors of the best alignment of what was recognized with what was said.
struct WordErrors {
  int errors = 0;
  int words = 0;

  double percent() const { return words ? 100.0 * errors / words : 0.0; }
  WordErrors& operator+=(const WordErrors& other);
};

/// The words of a text as they are compared: no case, no punctuation, "mr" is "mister", numbers
/// left as they are.
QStringList comparedWords(const QString& text);

WordErrors countWordErrors(const QString& said, const QString& recognized);

/// Draft words that were shown and are not, at the same place, in what follows.
int changedWords(const QStringList& shown, const QStringList& next);

}  // namespace velun::bench
