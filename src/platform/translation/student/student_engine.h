// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/student/shortlist.h"
#include "platform/translation/student/student_model.h"
#include "platform/translation/student/vocabulary.h"

#include <optional>
#include <QString>
#include <stop_token>
#include <vector>

namespace velun {

/// Where the files of one model lie. The target vocabulary and the shortlist may be empty: the
/// source's vocabulary serves both sides, and every token may be put out.
struct StudentFiles {
  QString model;
  QString sourceVocabulary;
  QString targetVocabulary;
  QString shortlist;
};

/// A loaded translation model: a sentence in, its translation out. One thread at a time.
class StudentEngine {
 public:
  /// The most tokens that the models were trained to take at once, without the end token.
  static constexpr int kMostTokens = 127;

  struct Limits {
    /// How many tokens a translation may have for each of the source's.
    float lengthFactor = 2.0F;
  };

  /// Throws `ModelFormatError` when a file is damaged, unsupported or does not fit the others.
  explicit StudentEngine(const StudentFiles& files) : StudentEngine(files, Limits()) {}
  StudentEngine(const StudentFiles& files, const Limits& limits);

  /// How many tokens a text has.
  int tokenCount(const QString& text) const;

  /// The translation of one sentence, both without surrounding white space; blank text stays
  /// empty. What is too long is cut between tokens: cut it at better places before. Throws
  /// `Cancelled` soon after a stop was requested.
  QString translateSentence(const QString& sentence, std::stop_token stop = {}) const;

 private:
  StudentModel model_;
  Vocabulary source_;
  std::optional<Vocabulary> target_;
  std::optional<Shortlist> shortlist_;
  Limits limits_;
};

}  // namespace velun
