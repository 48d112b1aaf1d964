// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/phrase_lines.h"
#include "platform/speech/helper/punctuator.h"
#include "platform/speech/helper/sherpa_stream.h"
#include "platform/speech/helper/silence_meter.h"
#include "platform/speech/helper/slow_gain.h"
#include "platform/speech/helper/spoken_tokens.h"
#include "platform/speech/helper/stream_recognizer.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace velun {

/// What the recognizers of sherpa-onnx have in common: they take audio piece by piece, and turn the
/// text of a phrase into lines.
class SherpaRecognizer : public StreamRecognizer {
 public:
  void accept(std::span<const float> samples) final;
  bool isInPhrase() const final { return !lines_.isEmpty(); }
  std::vector<TranscriptionResult> takeResults() final;

 protected:
  /// Checks and loads the model. `punctuator`, which may be null, is applied to the results. Throws
  /// `std::runtime_error` and the exceptions of sherpa-onnx.
  SherpaRecognizer(const sherpa::Library& library, const RecognizerSettings& settings,
                   const Punctuator* punctuator);

  /// Decodes the next 0.1 s of audio, or less. The samples are in -1…1.
  virtual void acceptPiece(std::span<const float> piece) = 0;

  /// Accepts silence that is not a part of the audio.
  void acceptSilence(double seconds);

  /// The same samples at the level at which recognition works best.
  std::vector<float> amplified(std::span<const float> samples) { return gain_.amplified(samples); }

  /// The phrase has this text until now. Its tokens begin at `tokensBegin` seconds of the stream.
  void updatePhrase(const QString& text, SpokenTokens tokens, double tokensBegin);

  /// The phrase has ended with this text, and covers the audio up to `until` seconds of the stream.
  void finishPhrase(const QString& text, double until, bool isCut = false);

  /// The number of words of the phrase that are in lines.
  std::size_t finalCount() const { return lines_.finalCount(); }

  /// Seconds since the last voice in the audio, by its level.
  double silentSeconds() const { return silence_.seconds(); }
  /// Whether the model has decoded all of the audio that has a voice.
  bool hasDecodedSpeech() const {
    return silentSeconds() > stream_.fedSeconds() - stream_.decodedSeconds();
  }

  /// Silence after which the last word is recognized, in seconds.
  double tailSeconds() const;

  const RecognizerSettings& settings() const { return settings_; }
  SherpaStream& stream() { return stream_; }
  const SherpaStream& stream() const { return stream_; }

 private:
  void take(PhraseLines::Results results, std::optional<double> until);

  const RecognizerSettings settings_;
  const Punctuator* punctuator_;
  PhraseLines lines_;
  SlowGain gain_;
  SilenceMeter silence_;
  SherpaStream stream_;
  std::size_t heard_ = 0;  ///< samples accepted
  std::vector<TranscriptionResult> results_;
};

}  // namespace velun
