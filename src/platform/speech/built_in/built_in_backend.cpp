// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/built_in/built_in_backend.h"

#include "platform/speech/neural/punctuation_helper.h"

#include <utility>

namespace velun {

namespace {

constexpr double kSampleRate = 16000;
/// Seconds. If nothing follows a phrase that was cut for so long, its sentence has ended.
constexpr double kSentencePause = 1.0;

}  // namespace

BuiltInBackend::BuiltInBackend(HelperProgram program, RecognizerSettings settings,
                               std::unique_ptr<PunctuationRestorer> punctuation,
                               std::shared_ptr<const CaptionStyle> style,
                               DecodingSpeed::Report report)
    : helper_(std::move(program), std::move(settings), HelperProcess::kDefaultTimeout,
              std::move(report)),
      writer_(std::move(punctuation), std::move(style)) {}

void BuiltInBackend::load() {
  helper_.load();
  writer_.load();
}

std::optional<QString> BuiltInBackend::notice() const {
  return writer_.hasModel() ? writer_.failure() : missingPunctuationText();
}

void BuiltInBackend::acceptAudio(std::span<const float> samples) {
  helper_.acceptAudio(samples);
  heardSeconds_ += static_cast<double>(samples.size()) / kSampleRate;
}

std::vector<TranscriptionResult> BuiltInBackend::poll() {
  takeResults();
  const std::optional<double> unfinished = writer_.unfinishedUntil();
  if (unfinished && !helper_.expectsResults() && heardSeconds_ > *unfinished + kSentencePause) {
    finishSentence();
  }
  return std::exchange(results_, {});
}

void BuiltInBackend::takeResults() {
  for (const TranscriptionResult& heard : helper_.poll()) {
    // Of a recording, the phrase before a pause and the one after it may come together.
    const std::optional<double> unfinished = writer_.unfinishedUntil();
    if (unfinished && !heard.words.empty() &&
        heard.words.front().start > *unfinished + kSentencePause) {
      finishSentence();
    }
    for (TranscriptionResult& result : writer_.write(heard)) add(std::move(result));
  }
}

void BuiltInBackend::finishSentence() {
  if (std::optional<TranscriptionResult> rest = writer_.finish()) add(*std::move(rest));
}

void BuiltInBackend::add(TranscriptionResult result) {
  if (!result.isFinal && result.text == shownDraft_) return;
  shownDraft_ = result.isFinal ? QString() : result.text;
  results_.push_back(std::move(result));
}

bool BuiltInBackend::expectsResults() const {
  return helper_.expectsResults() || writer_.unfinishedUntil();
}

void BuiltInBackend::finalize() {
  helper_.finalize();
  takeResults();
  finishSentence();
}

void BuiltInBackend::cancel() {
  helper_.cancel();
  writer_.cancel();
}

}  // namespace velun
