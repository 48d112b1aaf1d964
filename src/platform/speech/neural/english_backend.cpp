// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/neural/english_backend.h"

#include "platform/speech/english/english_text.h"

#include <utility>

namespace velun {

EnglishBackend::EnglishBackend(std::unique_ptr<RecognizerBackend> recognizer,
                               std::shared_ptr<const CaptionStyle> style)
    : recognizer_(std::move(recognizer)), style_(std::move(style)) {}

std::vector<TranscriptionResult> EnglishBackend::poll() {
  std::vector<TranscriptionResult> results;
  for (TranscriptionResult& result : recognizer_->poll()) {
    const EnglishTextOptions options{style_->numbersAsDigits, !result.isFinal};
    result.text = joinedText(writeEnglish(captionWords(result.text), options));
    if (!result.isFinal && result.text == shownDraft_) continue;
    shownDraft_ = result.isFinal ? QString() : result.text;
    results.push_back(std::move(result));
  }
  return results;
}

}  // namespace velun
