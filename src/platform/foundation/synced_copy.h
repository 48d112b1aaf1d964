// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/file_descriptor.h"

#include <atomic>
#include <mutex>
#include <QByteArray>
#include <QString>
#include <vector>

namespace velun {

/// Protects a file against power loss that is replaced often and without waiting for the disk. A
/// power loss may leave a file that was replaced without a sync empty. Therefore a hidden second
/// name beside the file, the synced copy, always leads to the last version that is on the disk; it
/// is empty while there is none. `findSyncedCopies` finds the copies that a power loss or a kill
/// left behind. Without hard links (exFAT) the file is synced but not protected in between.
class SyncedCopy final {
 public:
  SyncedCopy() = default;
  Q_DISABLE_COPY_MOVE(SyncedCopy)

  /// Starts the protection of the file at `path`, which need not exist. Further calls must pass the
  /// same path; they start the protection again if an `update` found that the file was deleted.
  /// Does not wait for the disk. Errors are ignored: the file can still be written. One thread; the
  /// first call comes before the first `update`.
  void protect(const QString& path);

  /// The file; empty before `protect`. Any thread.
  QString path() const;
  /// The folder of the file. Any thread, after `protect`.
  QString folder() const;

  /// Waits until the file is on the disk and makes it the synced copy. Removes the copy when the
  /// file does not exist. Throws `FileError`; the copy is unchanged then. Any thread.
  void update();

  /// Ends the protection: brings the file onto the disk and removes the copy, which stays if that
  /// fails. Further calls do nothing. Any thread.
  void finish();

 private:
  void sync();
  void syncLinked(const QByteArray& name);
  void syncOnly();
  [[noreturn]] void refuse(int code) const;

  std::mutex mutex_;
  QByteArray file_;
  /// The copy, locked while this program protects the file.
  FileDescriptor lock_;
  bool isFinished_ = false;
  /// The file was deleted, and the copy with it.
  std::atomic<bool> isRemoved_ = false;
};

/// Paths of the copy that protects a file: those of the file and of the copy.
struct FoundCopy {
  QString file;
  QString copy;
};

/// The synced copies in `folder` that no running program protects. Removes what an interrupted
/// `update` left. Any thread.
std::vector<FoundCopy> findSyncedCopies(const QString& folder);

/// Waits until the names in a folder are on the disk. Returns false with errno set. Any thread.
bool syncFolder(const QString& folder);

}  // namespace velun
