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

/// The paths of the files of one model. Without a target vocabulary the source's is used for both
/// sides; without a shortlist the output can be any token.
struct StudentFiles {
  QString model;
  QString sourceVocabulary;
  QString targetVocabulary;
  QString shortlist;
};

/// A loaded translation model: a sentence in, its translation out. One thread at a time.
class StudentEngine {
 public:
  /// Maximum number of tokens that the models were trained on, without the end token.
  static constexpr int kMaxTokens = 127;

  struct Limits {
    /// Maximum number of target tokens for each source token.
    float lengthFactor = 2.0F;
  };

  /// Throws `ModelFormatError` when a file is damaged, unsupported or does not match the others,
  /// and `FileError` when one cannot be read.
  explicit StudentEngine(const StudentFiles& files) : StudentEngine(files, Limits()) {}
  StudentEngine(const StudentFiles& files, const Limits& limits);

  /// The number of tokens of a text.
  int tokenCount(const QString& text) const;

  /// The translation of one sentence, trimmed; empty for blank text. Splits a sentence of more
  /// than `kMaxTokens` between tokens, so callers should split it at better places first. Throws
  /// `Cancelled` soon after a stop request.
  QString translateSentence(const QString& sentence, std::stop_token stop = {}) const;

 private:
  StudentModel model_;
  Vocabulary source_;
  std::optional<Vocabulary> target_;
  std::optional<Shortlist> shortlist_;
  Limits limits_;
};

}  // namespace velun
