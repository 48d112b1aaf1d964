// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/built_in/sentence_writer.h"
#include "platform/speech/neural/neural_backend.h"

#include <memory>

namespace velun {

/// Recognizes English with libvosk, in the helper program, and writes the words that it hears as
/// sentences. Its model is the built-in one or a downloaded one.
class BuiltInBackend final : public RecognizerBackend {
 public:
  /// Without `punctuation` results have none. The settings name no language, so that the helper
  /// program leaves the words as they are.
  BuiltInBackend(HelperProgram program, RecognizerSettings settings,
                 std::unique_ptr<PunctuationRestorer> punctuation,
                 std::shared_ptr<const CaptionStyle> style = std::make_shared<CaptionStyle>(),
                 DecodingSpeed::Report report = {});

  void expectRecording() override { helper_.expectRecording(); }
  void standAlone() override { helper_.standAlone(); }
  void load() override;
  std::optional<QString> notice() const override;
  void acceptAudio(std::span<const float> samples) override;
  std::vector<TranscriptionResult> poll() override;
  bool expectsResults() const override;
  double undecodedSeconds() const override { return helper_.undecodedSeconds(); }
  void awaitDecoding(std::chrono::milliseconds atMost) override { helper_.awaitDecoding(atMost); }
  void skip() override { helper_.skip(); }
  void finalize() override;
  void cancel() override;

  /// For tests that kill it.
  pid_t helperProcessId() const { return helper_.helperProcessId(); }

 private:
  void takeResults();
  void finishSentence();
  void add(TranscriptionResult result);

  NeuralBackend helper_;
  SentenceWriter writer_;
  std::vector<TranscriptionResult> results_;
  QString shownDraft_;
  double heardSeconds_ = 0;
};

}  // namespace velun
