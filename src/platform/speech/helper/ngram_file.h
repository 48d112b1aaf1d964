// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

namespace velun {

/// A language model in the format of OpenFst's "ngram" kind: the words that a recognizer knows and
/// how likely they are after one another. For one thread.
class NgramFile {
 public:
  /// Words that are said more often than once in 3,000 words are not favoured: they are heard well,
  /// and would be heard too often.
  static constexpr float kMinCost = 8;

  /// Throws `std::runtime_error` for a file that cannot be read or is of another kind.
  static NgramFile read(const QString& path);

  /// Whether it knows the word, which is in lower case.
  bool hasWord(const QString& word) const { return words_.contains(word); }

  /// Makes the words e^`gain` times as likely wherever they may follow.
  void favour(const QStringList& words, float gain);

  /// The content of the file with the changed weights.
  const QByteArray& bytes() const { return bytes_; }

 private:
  /// Bytes from the beginning of the file: one label or weight for each arc.
  struct Arcs {
    qsizetype labels = 0;
    qsizetype costs = 0;
    qsizetype count = 0;
  };

  QByteArray bytes_;
  QHash<QString, int> words_;
  Arcs arcs_;
};

/// The names and terms of the user's list of which the language model at `path` does not know every
/// word, in their order; none when it cannot be read. Takes 50 ms. Any thread.
QStringList unknownUserWords(const QString& userWords, const QString& path);

/// The single words of the user's list, in lower case, with the possessive of each.
QStringList wordsToFavour(const QString& userWords);

}  // namespace velun
