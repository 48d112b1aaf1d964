// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <stdexcept>

namespace velun {

/// A file is missing, cannot be read, or is not the expected one.
class DamagedFile final : public std::runtime_error {
 public:
  explicit DamagedFile(const QString& name) : std::runtime_error(name.toStdString()), name_(name) {}

  const QString& name() const { return name_; }

 private:
  QString name_;
};

/// Compares a file's SHA-256 with `sha256`, in hexadecimal. Throws `DamagedFile` with the file's
/// name.
void checkFile(const QString& path, const QByteArray& sha256);

/// Checks the files below `folder` that `sums` lists in the format of `sha256sum`, which takes
/// 0.2 s for 50 MB. Throws `DamagedFile` with the path below the folder; an empty list or an
/// invalid line counts as a damaged "SHA256SUMS".
void checkFiles(const QString& folder, const QByteArray& sums);

}  // namespace velun
