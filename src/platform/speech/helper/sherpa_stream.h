// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/model_preflight.h"
#include "platform/speech/helper/recognizer_settings.h"
#include "platform/speech/helper/sherpa_library.h"

#include <cstddef>
#include <memory>
#include <QByteArray>
#include <span>
#include <vector>

namespace velun {

/// A recognition model of sherpa-onnx and one stream of 16 kHz mono audio through it. For one
/// thread.
class SherpaStream {
 public:
  /// One token that was recognized.
  struct Token {
    QByteArray text;  ///< UTF-8; begins with "▁" or a blank at the beginning of a word
    double time = 0;  ///< seconds since the beginning of the segment

    bool operator==(const Token&) const = default;
  };
  /// What was recognized since the stream or its segment began.
  struct Hearing {
    QByteArray text;  ///< UTF-8
    std::vector<Token> tokens;
  };

  /// Checks and loads the model, unless another stream of this process has the same settings and so
  /// the same model. Throws `std::runtime_error` and the exceptions of sherpa-onnx.
  SherpaStream(const sherpa::Library& library, const RecognizerSettings& settings);

  /// Starts again without any memory of earlier audio.
  void begin();

  /// Begins a new segment of the same audio. What the model keeps depends on its family.
  void beginSegment();

  /// Adds finite samples in -1…1.
  void feed(std::span<const float> samples);
  void feedSilence(double seconds);

  /// Decodes one step; false if there is not enough audio for it.
  bool decodeStep();

  Hearing hearing() const;
  /// Whether a silence or the maximum length of a segment has been reached.
  bool isEndpoint() const;

  const ModelSteps& steps() const { return steps_; }
  /// Seconds of audio since `begin`.
  double fedSeconds() const;
  /// Seconds of it that are decoded.
  double decodedSeconds() const;

 private:
  using Handle = std::unique_ptr<const void, void (*)(const void*)>;

  const sherpa::Library& library_;
  const RecognizerSettings settings_;
  ModelSteps steps_;
  std::shared_ptr<const void> recognizer_;
  Handle stream_;
  std::size_t fed_ = 0;  ///< samples
  std::size_t stepCount_ = 0;
};

}  // namespace velun
