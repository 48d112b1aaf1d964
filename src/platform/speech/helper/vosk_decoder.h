// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/recognizer_settings.h"
#include "platform/speech/helper/vosk_library.h"
#include "platform/speech/transcription_result.h"

#include <cstddef>
#include <memory>
#include <mutex>
#include <span>
#include <vector>

namespace velun {

/// The words of one hearing of a phrase; times are seconds since its beginning.
using HeardWords = std::vector<RecognizedWord>;

/// The mean confidence of the words; 0 without words.
double meanConfidence(const HeardWords& words);

/// A libvosk recognizer with its model, for 16 kHz mono audio. It adapts to the voice that it
/// hears. For one thread.
class VoskDecoder {
 public:
  /// Checks every file of the model and loads it, which takes half a second and 90 MB, unless
  /// another decoder of this process has the same settings and so the same model. Throws
  /// `DamagedFile` and `std::runtime_error`.
  VoskDecoder(const vosk::Library& library, const RecognizerSettings& settings);

  /// Another one with the same model, for one other thread. Throws `std::runtime_error`.
  VoskDecoder another() const { return VoskDecoder(library_, model_); }

  VoskDecoder(VoskDecoder&&) = default;
  ~VoskDecoder() { release(); }

  /// Decodes finite samples in -1…1. Throws `std::runtime_error`.
  void accept(std::span<const float> samples);

  /// The words of the phrase so far. Their times are estimates, and their confidence is 1: libvosk
  /// would tell both 1.5 s later only.
  const HeardWords& words();

  /// Ends the phrase and returns its words. What follows is heard with the adaptation to its voice.
  HeardWords endAndKeepVoice();

  /// Ends the phrase and returns its words. What follows is heard without adaptation.
  HeardWords end();

  /// Releases memory that grows with the words that were heard. Requires a call of `end` before.
  void releaseMemory();

 private:
  /// The model counts its recognizers without a lock.
  struct Model {
    explicit Model(void (*destroy)(VoskModel*)) : model(nullptr, destroy) {}

    std::unique_ptr<VoskModel, void (*)(VoskModel*)> model;
    std::mutex mutex;
  };
  using Recognizer = std::unique_ptr<VoskRecognizer, void (*)(VoskRecognizer*)>;

  VoskDecoder(const vosk::Library& library, std::shared_ptr<Model> model);
  // Throw what the constructor throws.
  static std::shared_ptr<Model> load(const vosk::Library& library,
                                     const RecognizerSettings& settings);
  static std::shared_ptr<Model> load(const vosk::Library& library, const QString& folder,
                                     const QString& userWords);
  static std::shared_ptr<Model> shared(const vosk::Library& library,
                                       const RecognizerSettings& settings);
  Recognizer create() const;
  void release();
  HeardWords take(const char* json);

  const vosk::Library& library_;
  std::shared_ptr<Model> model_;
  Recognizer recognizer_;
  /// Samples that the recognizer has heard, and where the phrase began in them: libvosk counts
  /// times from the recognizer's creation.
  std::size_t heard_ = 0;
  std::size_t phraseBegin_ = 0;
  HeardWords draft_;
};

}  // namespace velun
