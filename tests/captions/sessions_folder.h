// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/session_store.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace velun::test {

/// A session store in a temporary folder that can be made to fail.
struct SessionsFolder {
  /// Moves the folder away and puts a file in its place, so that every write fails.
  void breakStore() const {
    QDir().rename(store.directory.toLocalFile(), folder.filePath("aside"));
    QFile file(store.directory.toLocalFile());
    if (!file.open(QIODevice::WriteOnly)) qFatal("The store could not be broken");
  }
  /// Undoes `breakStore`.
  void repairStore() const {
    QFile::remove(store.directory.toLocalFile());
    QDir().rename(folder.filePath("aside"), store.directory.toLocalFile());
  }

  QStringList files() const {
    return QDir(store.directory.toLocalFile()).entryList(QDir::Files, QDir::Name);
  }
  /// Unfinished writes and synced copies.
  QStringList hiddenFiles() const {
    return QDir(store.directory.toLocalFile()).entryList({".*"}, QDir::Files | QDir::Hidden);
  }

  QTemporaryDir folder;
  SessionStore store{QUrl::fromLocalFile(folder.filePath("Sessions"))};
};

/// The bytes of the file at `url`; empty when it cannot be read.
inline QByteArray contentsOf(const QUrl& url) {
  QFile file(url.toLocalFile());
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

}  // namespace velun::test
