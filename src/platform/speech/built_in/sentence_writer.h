// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/caption_style.h"
#include "platform/speech/english/caption_word.h"
#include "platform/speech/punctuation_restorer.h"
#include "platform/speech/transcription_result.h"

#include <memory>
#include <optional>
#include <vector>

namespace velun {

/// Writes the words of an English recognizer as sentences: with case, punctuation and numbers,
/// which depend on the pauses between the words and on what was written before. A sentence that
/// goes on after a cut in long speech is written as one. For one thread.
class SentenceWriter {
 public:
  /// Without `punctuation`, or after it failed, every result becomes a sentence without marks.
  explicit SentenceWriter(
      std::unique_ptr<PunctuationRestorer> punctuation,
      std::shared_ptr<const CaptionStyle> style = std::make_shared<CaptionStyle>());

  /// Loads the punctuation model. Never throws.
  void load();

  /// Whether results have case and punctuation: false without a model and after it failed.
  bool isPunctuating() const;
  /// Why the model that it was given restores no punctuation any more, localized.
  std::optional<QString> failure() const;
  bool hasModel() const { return punctuation_ != nullptr; }

  /// Writes one result; there may be no final result yet, or a draft after it. Results without
  /// words stay as they are.
  std::vector<TranscriptionResult> write(const TranscriptionResult& result);

  /// When the unfinished sentence of a phrase that was cut ended, in seconds of audio; nullopt if
  /// there is none.
  std::optional<double> unfinishedUntil() const;

  /// Writes that sentence as a final result.
  std::optional<TranscriptionResult> finish();

  /// Makes a running operation return soon. Any thread.
  void cancel();

 private:
  using HeardWords = std::vector<RecognizedWord>;

  CaptionWords punctuated(const CaptionWords& words, bool isFinal);
  TranscriptionResult draft();
  TranscriptionResult final(const CaptionWords& words, std::size_t count, bool goesOn);
  QString text(const CaptionWords& words, bool isFinal) const;
  void forgetOldContext(const HeardWords& heard);

  std::unique_ptr<PunctuationRestorer> punctuation_;
  std::shared_ptr<const CaptionStyle> style_;
  CaptionWords context_;   ///< the last words of the final results, as they were written
  HeardWords unfinished_;  ///< heard in phrases that were cut, and not written as final yet
  HeardWords heard_;       ///< the same and the words of the present result
};

}  // namespace velun
