// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/model_preflight.h"
#include "platform/speech/helper/phrase_lines.h"
#include "platform/speech/helper/punctuator.h"
#include "platform/speech/helper/recognizer_settings.h"
#include "platform/speech/helper/sherpa_library.h"
#include "platform/speech/helper/slow_gain.h"
#include "platform/speech/helper/stream_recognizer.h"

#include <memory>
#include <span>
#include <vector>

namespace velun {

/// A recognition model of sherpa-onnx.
class StreamingRecognizer final : public StreamRecognizer {
 public:
  /// Checks and loads the model. `punctuator`, which may be null, is applied to the results. Throws
  /// `std::runtime_error` and the exceptions of sherpa-onnx.
  StreamingRecognizer(const sherpa::Library& library, const RecognizerSettings& settings,
                      const Punctuator* punctuator);

  void accept(std::span<const float> samples) override;
  /// Feeds enough silence to get the last word, and ends the phrase.
  void finalize() override;
  /// Does not wait for the last word, because decoding is too slow already.
  void skip() override;
  bool isInPhrase() const override { return !lines_.isEmpty(); }
  std::vector<TranscriptionResult> takeResults() override;

 private:
  using Handle = std::unique_ptr<const void, void (*)(const void*)>;

  void beginStream();
  void feed(std::span<const float> samples);
  void decodeReady();
  void readResult();
  void take(PhraseLines::Results results);
  void deliverFinal();
  void endPhrase();
  double segmentSeconds() const;

  const sherpa::Library& library_;
  RecognizerSettings settings_;
  const Punctuator* punctuator_;
  PhraseLines lines_;
  SlowGain gain_;
  ModelSteps steps_;
  Handle recognizer_;
  Handle stream_;
  /// The last samples fed to the stream.
  std::vector<float> recent_;
  /// Of the stream: samples fed, decoding steps, and the beginning of the phrase in seconds.
  std::size_t fed_ = 0;
  std::size_t stepCount_ = 0;
  double phraseBegin_ = 0;
  double lastWord_ = 0;   ///< seconds since the beginning of the phrase
  double lineBegin_ = 0;  ///< when its last line was finished, in the same seconds
  QString text_;          ///< of the phrase, without restored punctuation
  std::vector<TranscriptionResult> results_;
};

}  // namespace velun
