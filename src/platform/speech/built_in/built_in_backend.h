// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/built_in/final_pass.h"
#include "platform/speech/built_in/phrase_detector.h"
#include "platform/speech/built_in/sphinx_decoder.h"
#include "platform/speech/built_in/stable_draft.h"
#include "platform/speech/punctuation_restorer.h"
#include "platform/speech/recognizer_backend.h"

#include <memory>
#include <QString>
#include <vector>

namespace velun {

/// US English without any download: a fast decoder produces drafts while a phrase is spoken, and a
/// second one decodes the whole phrase again for its final words.
class BuiltInBackend final : public RecognizerBackend {
 public:
  /// Loads both decoders. Without `punctuation` results have none. Throws `Failure`.
  explicit BuiltInBackend(std::unique_ptr<PunctuationRestorer> punctuation);
  ~BuiltInBackend() override;

  void load() override;
  void acceptAudio(std::span<const float> samples) override;
  std::vector<TranscriptionResult> poll() override;
  bool expectsResults() const override;
  void finalize() override;
  void cancel() override;

 private:
  void acceptFrame(std::span<const float> frame);
  void beginDraft();
  void feedDraft(std::span<const float> samples);
  void endPhrase();
  void showDraft();
  void deliver(const QStringList& words);
  QString written(const QStringList& words) const;
  void takeFinal();

  /// Returns the decoders' memory to the system, where the allocator would keep some of it.
  struct HeapTrimmer {
    ~HeapTrimmer();
  };

  HeapTrimmer trimmer_;  // destroyed after the decoders
  std::unique_ptr<PunctuationRestorer> punctuation_;
  SphinxDecoder drafts_;
  FinalPass finals_;
  PhraseDetector phrases_;
  StableDraft stable_;
  std::vector<float> partialFrame_;
  std::vector<TranscriptionResult> results_;
  /// The last draft of the phrase whose final words are pending, and the draft of the current
  /// phrase. Both are shown, one after the other.
  QString awaitedDraft_;
  QString draft_;
  QString shownDraft_;
  /// The words of `draft_`.
  QStringList draftWords_;
  bool isDrafting_ = false;
  int framesSinceGuess_ = 0;
  /// The gain for the current phrase, from the level of earlier ones.
  float draftGain_ = 1;
  /// A phrase has ended and its final words are pending.
  bool awaitsFinal_ = false;
  /// The final pass was started in a pause of the current phrase.
  bool isSettling_ = false;
  /// Seconds of voice in the pending phrase.
  double awaitedVoice_ = 0;
};

}  // namespace velun
