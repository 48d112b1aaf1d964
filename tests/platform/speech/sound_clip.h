// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <QFile>
#include <vector>

namespace velun::test {

/// The samples of a 16-bit, 16 kHz mono WAV file.
inline std::vector<std::int16_t> clipIntegers(const QString& path) {
  constexpr int kHeadBytes = 44;
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly)) qFatal("%s is missing", qPrintable(path));
  const QByteArray bytes = file.readAll().mid(kHeadBytes);
  std::vector<std::int16_t> samples(static_cast<std::size_t>(bytes.size()) / sizeof(std::int16_t));
  std::memcpy(samples.data(), bytes.constData(), samples.size() * sizeof(std::int16_t));
  return samples;
}

/// The same in -1…1.
inline std::vector<float> clipSamples(const QString& path) {
  const std::vector<std::int16_t> integers = clipIntegers(path);
  std::vector<float> samples(integers.size());
  std::transform(integers.begin(), integers.end(), samples.begin(),
                 [](std::int16_t sample) { return static_cast<float>(sample) / 32768.0F; });
  return samples;
}

/// The path of a clip of a LibriVox recording in a Debian package; 0880 is "He was not an ill
/// disposed young man", 3 s.
inline QString readAloud(const QString& number) {
  return QStringLiteral(
             "/usr/share/pocketsphinx/test/data/librivox/"
             "sense_and_sensibility_01_austen_64kb-%1.wav")
      .arg(number);
}

inline std::vector<float> silence(double seconds) {
  return std::vector<float>(static_cast<std::size_t>(seconds * 16000), 0.0F);
}

}  // namespace velun::test
