// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/session_sync.h"

#include "model/session_recovery.h"

#include <mutex>
#include <utility>

namespace velun {

namespace {

/// A power loss costs at most what was said in this time. Each sync writes the whole file, which
/// grows to 4 MB in a day, so more of them would wear out flash memory.
constexpr double kSyncInterval = 20;

std::optional<FileError> sync(SyncedCopy& copy) {
  try {
    copy.update();
    return std::nullopt;
  } catch (const FileError& error) {
    return error;
  }
}

}  // namespace

SessionSync::SessionSync(const Clock& clock) : clock_(clock) {}

SessionSync::~SessionSync() {
  job_.cancel();
  // A recovery that has begun ends first; after this no other one begins.
  const std::scoped_lock lock(*recovery_);
  // Also completes the jobs of earlier sessions that have not begun.
  for (const std::weak_ptr<SyncedCopy>& each : replaced_) {
    if (const auto copy = each.lock()) copy->finish();
  }
  copy_->finish();
  for (const OneShot<bool>& each : waiting_) each.complete(true);
}

void SessionSync::fileWritten(bool now) {
  isUnsynced_ = true;
  const double time = clock_.monotonicSeconds();
  const bool isDue = !lastSync_ || time - *lastSync_ >= kSyncInterval;
  if (!now && !isDue) return;
  if (job_.isRunning()) {
    isNeededAgain_ = true;
  } else {
    start();
  }
}

void SessionSync::start() {
  const bool isFirst = !lastSync_;
  lastSync_ = clock_.monotonicSeconds();
  isUnsynced_ = false;
  isNeededAgain_ = false;
  job_.start(
      [copy = copy_, isFirst, recovery = recovery_](const std::stop_token& stop) {
        const std::optional<FileError> error = sync(*copy);
        if (isFirst) {
          const std::scoped_lock lock(*recovery);
          if (!stop.stop_requested()) recoverSessions(copy->folder());
        }
        return error;
      },
      [this](const std::optional<FileError>& error) { syncEnded(error); });
}

void SessionSync::syncEnded(const std::optional<FileError>& error) {
  if (error) {
    lastSync_.reset();
    Q_EMIT failed(*error);
  } else {
    Q_EMIT succeeded();
  }
  if (isNeededAgain_ && isUnsynced_) start();
  if (job_.isRunning()) return;
  for (const OneShot<bool>& each : std::exchange(waiting_, {})) each.complete(true);
}

OneShot<bool> SessionSync::finished() {
  OneShot<bool> result;
  if (isRunning()) {
    waiting_.push_back(result);
  } else {
    result.complete(true);
  }
  return result;
}

void SessionSync::startUnreported(std::shared_ptr<SyncedCopy> copy, void (*work)(SyncedCopy&)) {
  lastSync_.reset();
  isUnsynced_ = false;
  isNeededAgain_ = false;
  job_.start(
      [copy = std::move(copy), work](const std::stop_token&) {
        work(*copy);
        return std::optional<FileError>();
      },
      [this](const std::optional<FileError>& error) { syncEnded(error); });
}

void SessionSync::protect(const QString& path) {
  if (copy_->path() != path) endSession();
  copy_->protect(path);
}

void SessionSync::endSession() {
  if (copy_->path().isEmpty()) return;
  const auto copy = std::exchange(copy_, std::make_shared<SyncedCopy>());
  std::erase_if(replaced_, [](const auto& each) { return each.expired(); });
  replaced_.push_back(copy);
  startUnreported(copy, [](SyncedCopy& each) { each.finish(); });
}

void SessionSync::fileDeleted() {
  // The copy stays the one of this path: two of them would wait for each other's lock.
  if (!copy_->path().isEmpty()) startUnreported(copy_, [](SyncedCopy& each) { sync(each); });
}

}  // namespace velun
