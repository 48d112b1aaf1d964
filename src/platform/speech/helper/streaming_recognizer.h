// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/sherpa_recognizer.h"

#include <optional>
#include <span>
#include <vector>

namespace velun {

/// A model of sherpa-onnx that can be restarted between phrases.
class StreamingRecognizer final : public SherpaRecognizer {
 public:
  /// Checks and loads the model. `punctuator`, which may be null, is applied to the results. Throws
  /// `std::runtime_error` and the exceptions of sherpa-onnx.
  StreamingRecognizer(const sherpa::Library& library, const RecognizerSettings& settings,
                      const Punctuator* punctuator);

  /// Feeds enough silence to get the last word, and ends the phrase.
  void finalize() override;
  /// Does not wait for the last word, because decoding is too slow already.
  void skip() override;

 private:
  void acceptPiece(std::span<const float> piece) override;
  void beginStream();
  void feed(std::span<const float> samples);
  void decodeReady();
  void readResult();
  QString written(const SherpaStream::Hearing& hearing) const;
  bool hasPaused() const;
  bool hasEnded() const;
  bool canRestart() const;
  void endPhrase(bool isPaused);
  void takeLateMark();
  double segmentSeconds() const;

  /// The last samples fed to the stream.
  std::vector<float> recent_;
  double phraseBegin_ = 0;  ///< in the stream, in seconds
  double lastWord_ = 0;     ///< seconds since the beginning of the phrase
  double lineBegin_ = 0;    ///< when its last line was finished, in the same seconds
  QString text_;            ///< of the phrase, without restored punctuation
};

}  // namespace velun
