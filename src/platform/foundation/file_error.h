// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <system_error>

namespace velun {

/// A file operation that failed. It has no text for the user; the layers above make one.
class FileError final : public std::system_error {
 public:
  enum class Operation { read, write, list };

  /// `code` is an errno value.
  FileError(Operation operation, int code, const QString& path)
      : std::system_error(code, std::generic_category(), path.toStdString()),
        operation_(operation),
        path_(path) {}

  Operation operation() const { return operation_; }
  /// The file or folder of the operation.
  const QString& path() const { return path_; }

 private:
  Operation operation_;
  QString path_;
};

}  // namespace velun
