// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/wav_file.h"

#include <QFile>
#include <QtEndian>
#include <stdexcept>

namespace velun::bench {

namespace {

[[noreturn]] void refuse(const QString& path) {
  throw std::runtime_error(
      qPrintable(path + QStringLiteral(" is not a WAV file with 16-bit samples at 16 kHz")));
}

}  // namespace

Sound readWav(const QString& path) {
  QFile file(path);
  if (!file.open(QFile::ReadOnly)) refuse(path);
  const QByteArray bytes = file.readAll();
  if (!bytes.startsWith("RIFF") || bytes.mid(8, 4) != "WAVE") refuse(path);
  Sound sound;
  qsizetype channels = 0;
  for (qsizetype at = 12; at + 8 <= bytes.size();) {
    const QByteArray name = bytes.mid(at, 4);
    const qsizetype size = qFromLittleEndian<quint32>(bytes.constData() + at + 4);
    const char* body = bytes.constData() + at + 8;
    if (name == "fmt " && at + 24 <= bytes.size()) {
      channels = qFromLittleEndian<quint16>(body + 2);
      const auto rate = qFromLittleEndian<quint32>(body + 4);
      const auto bits = qFromLittleEndian<quint16>(body + 14);
      if (rate != Sound::sampleRate || bits != 16 || channels < 1) refuse(path);
    } else if (name == "data" && channels > 0) {
      const qsizetype length = std::min(size, bytes.size() - at - 8);
      for (qsizetype i = 0; i + 2 * channels <= length; i += 2 * channels) {
        sound.samples.push_back(qFromLittleEndian<qint16>(body + i) / 32768.0F);
      }
    }
    at += 8 + size + (size & 1);
  }
  if (sound.samples.empty()) refuse(path);
  return sound;
}

}  // namespace velun::bench
