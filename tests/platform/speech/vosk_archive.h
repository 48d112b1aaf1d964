// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/packed_bytes.h"
#include "platform/speech/built_in/built_in_recognizer_provider.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

namespace velun::test {

/// The built-in English model beside the helper program, as a zip archive with one folder: the form
/// in which models of libvosk are downloaded.
inline QByteArray voskArchive(const QString& program) {
  const QDir folder(BuiltInFiles::installed(QFileInfo(program).path()).model);
  std::vector<ArchiveEntry> entries;
  QDirIterator files(folder.path(), QDir::Files, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    QFile file(files.next());
    if (!file.open(QIODevice::ReadOnly)) qFatal("%s is missing", qPrintable(file.fileName()));
    const QString name = folder.relativeFilePath(file.fileName());
    entries.push_back({"vosk-model-small/" + name, file.readAll(), {}});
  }
  return zipped(entries);
}

}  // namespace velun::test
