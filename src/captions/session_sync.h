// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "platform/foundation/file_error.h"
#include "platform/foundation/latest_job.h"
#include "platform/foundation/one_shot.h"
#include "platform/foundation/synced_copy.h"

#include <memory>
#include <mutex>
#include <optional>
#include <QObject>
#include <vector>

namespace velun {

/// Brings the file of the current session onto the disk, in the background: with the first write,
/// with the first one 20 seconds or more after the last sync, and when asked to. There is no timer.
/// In between, and while a sync lasts, a `SyncedCopy` protects the file. After the first sync of a
/// session it also puts right what killed programs have left in the folder. Main thread; only the
/// destructor waits for the disk.
class SessionSync final : public QObject {
  Q_OBJECT

 public:
  /// `clock` must outlive it.
  explicit SessionSync(const Clock& clock);
  /// Waits until the file, and those of earlier sessions, are on the disk, and for the recovery.
  ~SessionSync() override;

  /// The session's file is about to be written to `path`. Protects it.
  void protect(const QString& path);

  /// The file was written. Starts a sync if one is due, or if `now`.
  void fileWritten(bool now);
  /// The session is replaced: brings its file onto the disk and ends the protection.
  void endSession();
  /// The file was deleted: removes what protects it. It may be written again.
  void fileDeleted();

  /// A sync is running.
  bool isRunning() const { return job_.isRunning(); }
  /// Completes when no sync is running any more, or when this object is destroyed.
  OneShot<bool> finished();

 Q_SIGNALS:
  /// The file as it was when the sync began is on the disk.
  void succeeded();
  /// The sync has failed; the next write starts one again.
  void failed(const FileError& error);

 private:
  void start();
  void syncEnded(const std::optional<FileError>& error);
  /// Starts `work`; nobody is told how it ends.
  void startUnreported(std::shared_ptr<SyncedCopy> copy, void (*work)(SyncedCopy&));

  const Clock& clock_;
  std::shared_ptr<SyncedCopy> copy_ = std::make_shared<SyncedCopy>();
  /// The copies of earlier sessions, which their jobs own.
  std::vector<std::weak_ptr<SyncedCopy>> replaced_;
  /// When the last successful sync began, on the monotonic clock; nullopt before the first one.
  std::optional<double> lastSync_;
  /// There were writes since the last sync began.
  bool isUnsynced_ = false;
  /// A sync was asked for during the running one.
  bool isNeededAgain_ = false;
  std::vector<OneShot<bool>> waiting_;
  /// Held while a job puts right what killed programs have left.
  std::shared_ptr<std::mutex> recovery_ = std::make_shared<std::mutex>();
  // Last: no result can arrive while the other members are destroyed.
  LatestJob job_;
};

}  // namespace velun
