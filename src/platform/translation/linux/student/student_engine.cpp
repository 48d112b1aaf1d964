// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/linux/student/student_engine.h"

#include "platform/translation/linux/student/model_format_error.h"

#include <algorithm>

namespace velun {

StudentEngine::StudentEngine(const StudentFiles& files)
    : model_(StudentModelFile::read(files.model)), source_(readModelBytes(files.sourceVocabulary)) {
  if (!files.targetVocabulary.isEmpty()) target_.emplace(readModelBytes(files.targetVocabulary));
  const Vocabulary& target = target_ ? *target_ : source_;
  if (source_.size() > model_.sourceVocabulary() || target.size() > model_.targetVocabulary() ||
      target_.has_value() == model_.hasOneVocabulary()) {
    throw ModelFormatError::damaged("a vocabulary of another model");
  }
  if (!files.shortlist.isEmpty()) {
    shortlist_.emplace(readModelBytes(files.shortlist), model_.sourceVocabulary(),
                       model_.targetVocabulary());
  }
}

int StudentEngine::tokenCount(const QString& text) const {
  return static_cast<int>(source_.encode(text).size());
}

QString StudentEngine::translateSentence(const QString& sentence, std::stop_token stop) const {
  const std::vector<int> tokens = source_.encode(sentence.trimmed());
  const Vocabulary& target = target_ ? *target_ : source_;
  const StudentModel::SpecialTokens special{target.endToken(), target.unknownToken()};
  QString result;
  for (std::size_t from = 0; from < tokens.size(); from += kMostTokens) {
    const std::size_t to = std::min(tokens.size(), from + kMostTokens);
    std::vector<int> chunk(tokens.begin() + static_cast<std::ptrdiff_t>(from),
                           tokens.begin() + static_cast<std::ptrdiff_t>(to));
    chunk.push_back(source_.endToken());
    std::optional<std::vector<int>> candidates;
    if (shortlist_) candidates = shortlist_->candidates(chunk, model_.hasOneVocabulary());
    result += target.decode(model_.translate(chunk, special, candidates, stop));
  }
  return result.trimmed();
}

}  // namespace velun
