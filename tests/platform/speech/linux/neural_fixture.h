// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/linux/helper/recognizer_settings.h"
#include "platform/speech/linux/helper/sherpa_library.h"

#include <QFile>
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

/// Whether the recognition library was installed, by scripts/setup.
inline bool hasRecognitionLibrary() {
  return !sherpa::findLibrary(QFileInfo(helperProgram()).path()).isEmpty();
}

/// The samples of a 16-bit, 16 kHz mono sound file.
inline std::vector<float> sound(const QString& name) {
  constexpr int kHeadBytes = 44;
  QFile file(neuralData(name));
  if (!file.open(QIODevice::ReadOnly)) qFatal("%s is missing", qPrintable(name));
  const QByteArray bytes = file.readAll().mid(kHeadBytes);
  std::vector<float> samples;
  for (qsizetype i = 0; i + 1 < bytes.size(); i += 2) {
    const int value = static_cast<std::int16_t>(static_cast<std::uint8_t>(bytes[i]) |
                                                static_cast<std::uint8_t>(bytes[i + 1]) << 8);
    samples.push_back(static_cast<float>(value) / 32768.0F);
  }
  return samples;
}

inline std::vector<float> silence(double seconds) {
  return std::vector<float>(static_cast<std::size_t>(seconds * 16000), 0.0F);
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

inline RecognizerSettings zipformerCtc() {
  RecognizerSettings settings;
  settings.ctc = neuralData("zipformer2-ctc.int8.onnx");
  settings.tokens = neuralData("tokens-blank0.txt");
  settings.language = "en";
  return settings;
}

}  // namespace velun::test
