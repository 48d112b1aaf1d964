// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/phrase_finder.h"
#include "platform/speech/helper/phrase_hearing.h"
#include "platform/speech/helper/stable_draft.h"
#include "platform/speech/helper/stream_recognizer.h"

namespace velun {

/// Recognizes speech phrase by phrase with libvosk, with drafts. Writes lower-case words without
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
  void hear(const PhraseFinder::Step& step);
  void updateDraft(const PhraseFinder::Step& step);
  void endPhrase(const EndedPhrase& phrase);

  PhraseHearing hearing_;
  QString language_;
  PhraseFinder phrases_;
  StableDraft stable_;
  std::vector<TranscriptionResult> results_;
  QString draft_;  ///< the last one of the phrase
};

}  // namespace velun
