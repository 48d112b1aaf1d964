// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/built_in_fixture.h"

#include <algorithm>
#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QTemporaryDir>
#include <random>

namespace velun::test {

/// The built-in recognizer with a copy of its library and model, to be damaged.
class ModelCopy {
 public:
  ModelCopy() {
    QDirIterator files(original_.model, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
      const QString source = files.next();
      const QString name = QDir(original_.model).relativeFilePath(source);
      QDir(dir_.path()).mkpath(QFileInfo(name).path());
      QFile::link(QFileInfo(source).canonicalFilePath(), dir_.filePath(name));
      if (name != "README.md" && name != "SHA256SUMS") names_.append(name);
    }
    names_.sort();
    names_.append(kLibrary);
    QFile::link(original_.library, dir_.filePath(kLibrary));
  }

  static inline const QString kLibrary = "libvosk.so";

  BuiltInFiles files() const { return {original_.program, dir_.filePath(kLibrary), dir_.path()}; }

  /// The names of all files that are loaded.
  const QStringList& names() const { return names_; }

  QByteArray content(const QString& name) const {
    QFile file(dir_.filePath(name));
    if (!file.open(QIODevice::ReadOnly)) qFatal("%s cannot be read", qPrintable(name));
    return file.readAll();
  }

  void remove(const QString& name) const { QFile::remove(dir_.filePath(name)); }

  void replace(const QString& name, const QByteArray& content) const {
    remove(name);
    QFile file(dir_.filePath(name));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
      qFatal("%s cannot be written", qPrintable(name));
    }
  }

  /// Writes what `name` contains now into the list of sums, as if it were the expected file.
  void accept(const QString& name) const {
    const QByteArray sum =
        QCryptographicHash::hash(content(name), QCryptographicHash::Sha256).toHex();
    QByteArray sums;
    for (const QByteArray& line : content("SHA256SUMS").trimmed().split('\n')) {
      sums += (line.endsWith("  " + name.toUtf8()) ? sum + line.mid(sum.size()) : line) + '\n';
    }
    replace("SHA256SUMS", sums);
  }

 private:
  const BuiltInFiles original_ = builtInFiles();
  const QTemporaryDir dir_;
  QStringList names_;
};

/// The bytes with random ones changed.
inline QByteArray withChangedBytes(QByteArray bytes, int count) {
  std::mt19937 random(1);
  for (int i = 0; i < count && !bytes.isEmpty(); ++i) {
    bytes[static_cast<qsizetype>(random() % static_cast<std::size_t>(bytes.size()))] =
        static_cast<char>(random());
  }
  return bytes;
}

}  // namespace velun::test
