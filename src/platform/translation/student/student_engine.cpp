// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/student_engine.h"

#include "platform/translation/student/model_format_error.h"

#include <algorithm>
#include <cmath>

// oneDNN uses GNU OpenMP. Only GCC has its header.
extern "C" void omp_set_num_threads(int count);

namespace velun {

StudentEngine::StudentEngine(const StudentFiles& files, const Limits& limits)
    : model_(StudentModelFile::read(files.model)),
      source_(readModelBytes(files.sourceVocabulary)),
      limits_(limits) {
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
  // A line has so few tokens that several threads would mostly wait for each other, on processors
  // that recognition needs. The setting applies to the calling thread only.
  omp_set_num_threads(1);
  const std::vector<int> tokens = source_.encode(sentence.trimmed());
  const Vocabulary& target = target_ ? *target_ : source_;
  StudentModel::Decoding decoding;
  decoding.endToken = target.endToken();
  decoding.unknownToken = target.unknownToken();
  QString result;
  for (std::size_t from = 0; from < tokens.size(); from += kMaxTokens) {
    const std::size_t to = std::min(tokens.size(), from + kMaxTokens);
    std::vector<int> chunk(tokens.begin() + static_cast<std::ptrdiff_t>(from),
                           tokens.begin() + static_cast<std::ptrdiff_t>(to));
    chunk.push_back(source_.endToken());
    const float maxLength = limits_.lengthFactor * static_cast<float>(chunk.size());
    decoding.maxTokens = static_cast<int>(std::ceil(maxLength));
    if (shortlist_) decoding.candidates = shortlist_->candidates(chunk, model_.hasOneVocabulary());
    result += target.decode(model_.translate(chunk, decoding, stop));
  }
  return result.trimmed();
}

}  // namespace velun
