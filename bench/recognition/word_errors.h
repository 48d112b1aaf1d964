// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <span>

namespace velun::bench {

/// The errors of the best alignment of the recognized words with the spoken ones.
struct WordErrors {
  int errors = 0;
  int words = 0;

  double percent() const { return words ? 100.0 * errors / words : 0.0; }
  WordErrors& operator+=(const WordErrors& other);
};

/// The words of a text for the comparison: without case and punctuation, "mr" as "mister", numbers
/// unchanged.
QStringList comparedWords(const QString& text);

WordErrors countWordErrors(const QString& said, const QString& recognized);

/// Limits in percent.
struct Interval {
  double low = 0;
  double high = 0;
};

/// The 95 % confidence interval of the word errors of all clips together, by bootstrap: the errors
/// of as many clips, drawn with replacement, 1,000 times. The same clips give the same interval.
Interval confidenceInterval(std::span<const WordErrors> clips);

/// The number of shown draft words that the next text does not have at the same position.
int changedWords(const QStringList& shown, const QStringList& next);

}  // namespace velun::bench
