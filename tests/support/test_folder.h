// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <sys/stat.h>

namespace velun::test {

/// A temporary folder, removed with this object. Names are relative to it.
class TestFolder {
 public:
  TestFolder() {
    if (!folder_.isValid()) qFatal("no folder for the test");
  }

  QString path() const { return folder_.path(); }
  QString path(const QString& name) const { return folder_.filePath(name); }

  void write(const QString& name, const QByteArray& bytes) const {
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
      qFatal("cannot write");
    }
  }

  /// The bytes of the file; "unreadable" if it cannot be read.
  QByteArray contents(const QString& name) const {
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
  }

  /// Everything in the folder, hidden files too.
  QStringList names() const {
    return QDir(path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                  QDir::NoDotAndDotDot);
  }

  /// The permission bits; 0 if the file does not exist.
  unsigned mode(const QString& name) const {
    struct stat status {};
    const QByteArray encoded = QFile::encodeName(path(name));
    return ::stat(encoded.constData(), &status) == 0 ? status.st_mode & 07777 : 0;
  }

 private:
  QTemporaryDir folder_;
};

}  // namespace velun::test
