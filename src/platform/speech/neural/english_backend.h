// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/caption_style.h"
#include "platform/speech/recognizer_backend.h"

#include <memory>

namespace velun {

/// A recognizer of English whose texts are written as captions are: with "I", and numbers as digits
/// if `style` says so. It wraps a recognizer that writes case and punctuation.
class EnglishBackend final : public RecognizerBackend {
 public:
  EnglishBackend(std::unique_ptr<RecognizerBackend> recognizer,
                 std::shared_ptr<const CaptionStyle> style);

  void expectRecording() override { recognizer_->expectRecording(); }
  void standAlone() override { recognizer_->standAlone(); }
  void load() override { recognizer_->load(); }
  std::optional<QString> notice() const override { return recognizer_->notice(); }
  void acceptAudio(std::span<const float> samples) override { recognizer_->acceptAudio(samples); }
  std::vector<TranscriptionResult> poll() override;
  bool expectsResults() const override { return recognizer_->expectsResults(); }
  double undecodedSeconds() const override { return recognizer_->undecodedSeconds(); }
  void awaitDecoding(std::chrono::milliseconds atMost) override {
    recognizer_->awaitDecoding(atMost);
  }
  void skip() override { recognizer_->skip(); }
  QString adviceIfTooSlow() const override { return recognizer_->adviceIfTooSlow(); }
  void finalize() override { recognizer_->finalize(); }
  void cancel() override { recognizer_->cancel(); }

 private:
  std::unique_ptr<RecognizerBackend> recognizer_;
  std::shared_ptr<const CaptionStyle> style_;
  QString shownDraft_;
};

}  // namespace velun
