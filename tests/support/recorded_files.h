// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <vector>

namespace velun::test {

/// A call that changed the files of a folder or waited for the disk.
struct FileOperation {
  enum Kind { create, truncate, write, syncFile, syncFolder, link, rename, unlink };
  Kind kind;
  /// Of `create`, `truncate`, `write` and `syncFile`: the file, whatever its names are.
  int file = -1;
  /// The name in the folder, and the new one of `link` and `rename`.
  QByteArray name;
  QByteArray newName;
  /// Of `write`.
  QByteArray bytes;
};

/// Records the calls of this program, of all threads, in the order in which they happened. A test
/// that links it replaces the functions of the C library. Only one can exist at a time.
class RecordedFiles {
 public:
  explicit RecordedFiles(const QString& folder);
  ~RecordedFiles();
  Q_DISABLE_COPY_MOVE(RecordedFiles)

  std::vector<FileOperation> operations() const;

  /// The next sync of a file of this program fails with this errno.
  static void failNextSync(int code);
};

}  // namespace velun::test
