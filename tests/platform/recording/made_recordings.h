// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QStandardPaths>
#include <QTest>

namespace velun::test {

/// The program that decodes, as built.
inline QString decoderProgram() {
  return QStringLiteral(VELUN_DECODER);
}

/// Makes a file with FFmpeg; `arguments` are separated by blanks.
inline QString makeRecording(const QString& folder, const QString& name, const QString& arguments) {
  const QString path = folder + u'/' + name;
  QStringList all{"-v", "error", "-y"};
  all += arguments.split(u' ');
  all += path;
  if (QProcess::execute("ffmpeg", all) != 0) qFatal("ffmpeg could not make %s", qPrintable(name));
  return path;
}

/// A tone at half volume.
inline const QString kTone = QStringLiteral("-f lavfi -i sine=f=440:d=3:r=44100,volume=4");

}  // namespace velun::test
