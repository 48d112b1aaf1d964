// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/recognizer_settings.h"
#include "platform/speech/helper/sherpa_library.h"

#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace velun {

/// Describes voices with a speaker model of sherpa-onnx. Any thread.
class SpeakerModel {
 public:
  /// Checks and loads the model. Throws `std::runtime_error` and the exceptions of sherpa-onnx.
  SpeakerModel(const sherpa::Library& library, const RecognizerSettings& settings);

  /// The print of the voice in 16 kHz mono samples, of length 1 as a vector; empty if there is too
  /// little audio or the model cannot describe it. Throws the exceptions of sherpa-onnx.
  std::vector<float> print(std::span<const float> samples) const;

 private:
  const sherpa::Library& library_;
  std::unique_ptr<const void, void (*)(const void*)> model_;
  mutable std::mutex mutex_;
};

}  // namespace velun
