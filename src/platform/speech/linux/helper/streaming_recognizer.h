// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/linux/helper/model_preflight.h"
#include "platform/speech/linux/helper/punctuator.h"
#include "platform/speech/linux/helper/recognizer_settings.h"
#include "platform/speech/linux/helper/sherpa_library.h"
#include "platform/speech/transcription_result.h"

#include <memory>
#include <span>
#include <vector>

namespace velun {

/// One recognition model over one endless stream of 16 kHz mono sound.
class StreamingRecognizer {
 public:
  /// Checks and loads the model. `punctuator` writes the results; may be null. Throws
  /// `std::runtime_error`, and whatever the library throws.
  StreamingRecognizer(const sherpa::Library& library, const RecognizerSettings& settings,
                      const Punctuator* punctuator);

  /// Decodes; samples that are no numbers count as silence.
  void accept(std::span<const float> samples);

  /// Brings out the last word and ends the phrase.
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
  /// The end of what the stream was fed.
  std::vector<float> recent_;
  /// Of the stream: the samples fed, the steps taken, and where the phrase began.
  std::size_t fed_ = 0;
  std::size_t stepCount_ = 0;
  double phraseBegin_ = 0;
  double lastWord_ = 0;  ///< since the phrase's beginning
  QString text_;         ///< of the phrase, without restored punctuation
  QString draft_;        ///< as it was shown
  std::vector<TranscriptionResult> results_;
};

}  // namespace velun
