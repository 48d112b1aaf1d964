// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/model_preflight.h"
#include "platform/speech/helper/punctuator.h"
#include "platform/speech/helper/recognizer_settings.h"
#include "platform/speech/helper/sherpa_library.h"
#include "platform/speech/transcription_result.h"

#include <memory>
#include <span>
#include <vector>

namespace velun {

/// One recognition model, decoding one endless stream of 16 kHz mono audio.
class StreamingRecognizer {
 public:
  /// Checks and loads the model. `punctuator`, which may be null, is applied to the results. Throws
  /// `std::runtime_error` and the exceptions of sherpa-onnx.
  StreamingRecognizer(const sherpa::Library& library, const RecognizerSettings& settings,
                      const Punctuator* punctuator);

  /// Decodes the samples; those that are not finite count as silence.
  void accept(std::span<const float> samples);

  /// Feeds enough silence to get the last word, and ends the phrase.
  void finalize();

  /// Whether a phrase is under way.
  bool isInPhrase() const { return !draft_.isEmpty(); }

  /// The results since the last call.
  std::vector<TranscriptionResult> takeResults();

 private:
  using Handle = std::unique_ptr<const void, void (*)(const void*)>;

  void beginStream();
  void feed(std::span<const float> samples);
  void decodeReady();
  void readResult();
  void deliverFinal();
  void endPhrase();
  double segmentSeconds() const;

  const sherpa::Library& library_;
  RecognizerSettings settings_;
  const Punctuator* punctuator_;
  ModelSteps steps_;
  Handle recognizer_;
  Handle stream_;
  /// The last samples fed to the stream.
  std::vector<float> recent_;
  /// Of the stream: samples fed, decoding steps, and the beginning of the phrase in seconds.
  std::size_t fed_ = 0;
  std::size_t stepCount_ = 0;
  double phraseBegin_ = 0;
  double lastWord_ = 0;  ///< seconds since the beginning of the phrase
  QString text_;         ///< of the phrase, without restored punctuation
  QString draft_;        ///< the last draft that was reported
  std::vector<TranscriptionResult> results_;
};

}  // namespace velun
