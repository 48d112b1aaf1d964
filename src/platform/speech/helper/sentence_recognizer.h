// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/sherpa_recognizer.h"

namespace velun {

/// A model of sherpa-onnx that loses what it knows of the speech when it is restarted, so that the
/// next words are recognized worse. Lines end with the sentences that it writes, and in pauses,
/// without restarting it; that happens only in a long silence.
class SentenceRecognizer final : public SherpaRecognizer {
 public:
  /// Checks and loads the model. `punctuator`, which may be null, is applied to the results. Throws
  /// `std::runtime_error` and the exceptions of sherpa-onnx.
  SentenceRecognizer(const sherpa::Library& library, const RecognizerSettings& settings,
                     const Punctuator* punctuator);

  void finalize() override;
  void skip() override;

 private:
  void acceptPiece(std::span<const float> piece) override;
  void restart();
  void decodeReady();
  void updateLines();
  void endPhrase(double until);
  bool isSilent(double seconds) const;
  SpokenTokens phrase() const;
  QString phraseText() const;

  std::vector<SherpaStream::Token> tokens_;  ///< what was recognized since the restart
  std::size_t phraseBegin_ = 0;              ///< in the tokens
};

}  // namespace velun
