// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/recognizer_settings.h"
#include "platform/speech/helper/sherpa_library.h"
#include "platform/speech/sound_clip.h"

#include <QFileInfo>
#include <vector>

namespace velun::test {

/// A file among the tests' models and sounds.
inline QString neuralData(const QString& name) {
  return QString(VELUN_TEST_DATA "/") + name;
}

inline QString helperProgram() {
  return QStringLiteral(VELUN_RECOGNIZER);
}

/// A program that takes everything and says nothing: it writes only when its input ends.
inline QString silentProgram() {
  return QStringLiteral("/usr/bin/tail");
}

/// Whether the recognition library was installed, by scripts/setup.
inline bool hasRecognitionLibrary() {
  return !sherpa::findLibrary(QFileInfo(helperProgram()).path()).isEmpty();
}

/// The samples of a sound among them.
inline std::vector<float> sound(const QString& name) {
  return clipSamples(neuralData(name));
}

inline std::vector<float> operator+(std::vector<float> a, const std::vector<float>& b) {
  a.insert(a.end(), b.begin(), b.end());
  return a;
}

inline RecognizerSettings transducer() {
  RecognizerSettings settings;
  settings.encoder = neuralData("zipformer2-encoder.int8.onnx");
  settings.decoder = neuralData("decoder.int8.onnx");
  settings.joiner = neuralData("joiner.int8.onnx");
  settings.tokens = neuralData("tokens-blank0.txt");
  settings.language = "en";
  return settings;
}

inline RecognizerSettings nemoCtc() {
  RecognizerSettings settings;
  settings.nemoCtc = neuralData("nemo-ctc.int8.onnx");
  settings.tokens = neuralData("tokens.txt");
  settings.language = "en";
  return settings;
}

/// Recognizes English only if it is told the language.
inline RecognizerSettings nemoTransducer() {
  RecognizerSettings settings;
  settings.encoder = neuralData("nemo-encoder.int8.onnx");
  settings.decoder = neuralData("nemo-decoder.int8.onnx");
  settings.joiner = neuralData("nemo-joiner.int8.onnx");
  settings.tokens = neuralData("tokens.txt");
  settings.language = "en";
  settings.hearsLanguage = true;
  settings.keepsContext = true;
  settings.leadSilenceMs = 500;
  settings.tailSilenceMs = 800;
  return settings;
}

/// A transducer whose tokens have case and punctuation.
inline RecognizerSettings punctuatedTransducer() {
  RecognizerSettings settings = transducer();
  settings.tokens = neuralData("tokens-punctuated.txt");
  settings.writesMarks = true;
  settings.endpointSilence = 1.0;
  settings.tailSilenceMs = 1000;
  return settings;
}

inline RecognizerSettings zipformerCtc() {
  RecognizerSettings settings;
  settings.ctc = neuralData("zipformer2-ctc.int8.onnx");
  settings.tokens = neuralData("tokens-blank0.txt");
  settings.language = "en";
  return settings;
}

}  // namespace velun::test
