// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/phrase_lines.h"
#include "platform/speech/helper/punctuator.h"
#include "platform/speech/helper/sherpa_stream.h"
#include "platform/speech/helper/slow_gain.h"
#include "platform/speech/helper/spoken_tokens.h"
#include "platform/speech/helper/stream_recognizer.h"
#include "platform/speech/helper/voice_activity.h"

namespace velun {

/// A model of sherpa-onnx that loses what it knows of the speech when it is restarted, so that the
/// next words are recognized worse. Lines end with the sentences that it writes, and in pauses,
/// without restarting it; that happens only in a long silence.
class SentenceRecognizer final : public StreamRecognizer {
 public:
  /// Checks and loads the model. `punctuator`, which may be null, is applied to the results. Throws
  /// `std::runtime_error` and the exceptions of sherpa-onnx.
  SentenceRecognizer(const sherpa::Library& library, const RecognizerSettings& settings,
                     const Punctuator* punctuator);

  void accept(std::span<const float> samples) override;
  void finalize() override;
  void skip() override;
  bool isInPhrase() const override { return !lines_.isEmpty(); }
  std::vector<TranscriptionResult> takeResults() override;

 private:
  void restart();
  void measureSilence(std::span<const float> samples);
  void decodeReady();
  void updateLines();
  void endPhrase(double until);
  bool isSilent(double seconds) const;
  SpokenTokens phrase() const;
  QString phraseText() const;
  /// The final results cover the audio up to `until`, in seconds of the stream.
  void take(PhraseLines::Results results, std::optional<double> until);

  const RecognizerSettings settings_;
  const Punctuator* punctuator_;
  PhraseLines lines_;
  SlowGain gain_;
  SherpaStream stream_;
  VoiceActivity activity_;
  std::size_t heard_ = 0;  ///< samples accepted
  std::vector<float> partialFrame_;
  double quiet_ = 0;                         ///< seconds without voice at the end of the audio
  std::vector<SherpaStream::Token> tokens_;  ///< what was recognized since the restart
  std::size_t phraseBegin_ = 0;              ///< in the tokens
  std::vector<TranscriptionResult> results_;
};

}  // namespace velun
