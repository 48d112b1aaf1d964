// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/phrase_detector.h"
#include "platform/speech/helper/stable_draft.h"
#include "platform/speech/helper/stream_recognizer.h"
#include "platform/speech/helper/vosk_decoder.h"

namespace velun {

/// Recognizes speech phrase by phrase with libvosk. The first hearing of a phrase gives the drafts.
/// At its end the phrase is heard again, adapted to its voice, for the final words: this removes a
/// fifth of the errors (docs/recognition.md). Writes lower-case words without
/// punctuation; if the settings name a language, lines that begin with a capital letter.
class PhraseRecognizer final : public StreamRecognizer {
 public:
  /// Checks and loads the model. Throws `DamagedFile` and `std::runtime_error`.
  PhraseRecognizer(const vosk::Library& library, const RecognizerSettings& settings);

  void accept(std::span<const float> samples) override;
  void finalize() override;
  bool isInPhrase() const override { return phrases_.isInPhrase(); }
  std::vector<TranscriptionResult> takeResults() override;

 private:
  void acceptFrame(std::span<const float> frame);
  void beginPhrase();
  /// Lets the phrase be decoded again from its beginning if its level is not the one expected.
  void checkLevel();
  void decodeWaiting();
  void updateDraft();
  void endPhrase();
  HeardWords finalWords(std::span<const float> phrase, bool isLikelySpeech);
  /// The hearing that gave the drafts, or another one if that was unsure and had the wrong level.
  /// `phrase` has the right one.
  HeardWords firstHearing(std::span<const float> phrase, float gain);
  HeardWords heardAgain(std::span<const float> phrase, const HeardWords& first);
  TranscriptionResult written(HeardWords words, bool isFinal) const;

  VoskDecoder decoder_;
  QString language_;
  PhraseDetector phrases_;
  StableDraft stable_;
  std::vector<float> partialFrame_;
  /// Samples of the phrase that the decoder has not heard.
  std::vector<float> waiting_;
  std::vector<TranscriptionResult> results_;
  QString draft_;                ///< the last one of the phrase
  std::size_t heard_ = 0;        ///< samples of all frames
  std::size_t phraseBegin_ = 0;  ///< where the phrase began, in samples
  /// The gain for the drafts: from the level of the phrase before, until that of the present one is
  /// known.
  float draftGain_ = 1;
  bool isLevelChecked_ = false;
};

}  // namespace velun
