// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/word_errors.h"

#include <algorithm>
#include <numeric>
#include <QRegularExpression>
#include <random>
#include <vector>

namespace velun::bench {

WordErrors& WordErrors::operator+=(const WordErrors& other) {
  errors += other.errors;
  words += other.words;
  return *this;
}

QStringList comparedWords(const QString& text) {
  static const QRegularExpression notWord(QStringLiteral("[^\\w\\s']"),
                                          QRegularExpression::UseUnicodePropertiesOption);
  QString plain = text.toLower();
  plain.replace(notWord, QStringLiteral(" "));
  QStringList words = plain.simplified().split(u' ', Qt::SkipEmptyParts);
  words.replaceInStrings(QRegularExpression(QStringLiteral("^mr$")), QStringLiteral("mister"));
  return words;
}

WordErrors countWordErrors(const QString& said, const QString& recognized) {
  const QStringList reference = comparedWords(said);
  const QStringList hypothesis = comparedWords(recognized);
  std::vector<int> row(static_cast<std::size_t>(hypothesis.size()) + 1);
  std::iota(row.begin(), row.end(), 0);
  for (qsizetype i = 0; i < reference.size(); ++i) {
    int diagonal = row[0]++;
    for (std::size_t j = 1; j < row.size(); ++j) {
      const bool differs = reference[i] != hypothesis[static_cast<qsizetype>(j) - 1];
      const int cost = std::min({row[j] + 1, row[j - 1] + 1, diagonal + (differs ? 1 : 0)});
      diagonal = row[j];
      row[j] = cost;
    }
  }
  return {row.back(), static_cast<int>(reference.size())};
}

Interval confidenceInterval(std::span<const WordErrors> clips) {
  constexpr std::size_t kSamples = 1000;
  constexpr std::size_t kTail = kSamples / 40;  // 2.5 % at either end
  if (clips.empty()) return {};
  std::mt19937 random(1);
  std::vector<double> percents;
  for (std::size_t i = 0; i < kSamples; ++i) {
    WordErrors sample;
    for (std::size_t j = 0; j < clips.size(); ++j) sample += clips[random() % clips.size()];
    percents.push_back(sample.percent());
  }
  std::sort(percents.begin(), percents.end());
  return {percents[kTail], percents[kSamples - 1 - kTail]};
}

int changedWords(const QStringList& shown, const QStringList& next) {
  int changed = 0;
  for (qsizetype i = 0; i < shown.size(); ++i) {
    if (i >= next.size() || shown[i] != next[i]) ++changed;
  }
  return changed;
}

}  // namespace velun::bench
