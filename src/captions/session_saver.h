// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/session_sync.h"
#include "model/session_file/session_encoder.h"
#include "model/session_store.h"

#include <cstddef>
#include <optional>
#include <QObject>
#include <QString>
#include <QUrl>

namespace velun {

/// Keeps the file of the current session. In saving mode every change is written at once, and
/// `SessionSync` brings it onto the disk; outside it nothing is written. Main thread.
class SessionSaver final : public QObject {
  Q_OBJECT

 public:
  /// `session` and `clock` must outlive the saver.
  SessionSaver(const CaptionSession& session, SessionStore store, bool isSaving,
               const Clock& clock);

  const SessionStore& store() const { return store_; }
  /// The session is in saving mode.
  bool isSaving() const { return isSaving_; }
  /// The session's file; nullopt before the first write and after the file was deleted.
  const std::optional<QUrl>& url() const { return url_; }
  /// Why the last write or the last sync failed; nullopt if both succeeded.
  const std::optional<QString>& error() const {
    return writeFailure_ ? writeFailure_ : syncFailure_;
  }
  /// Whether there are lines that are in no file.
  bool hasUnsavedLines() const;

  /// The session was replaced by an empty one.
  void reset(bool isSaving);
  /// The line at `index` has changed since it was last written.
  void lineChanged(std::size_t index) { encoder_.lineChanged(index); }

  /// When a written file is brought onto the disk, in the background.
  enum class Sync { whenDue, now };

  /// Writes the file if the session is in saving mode and has lines. Returns false when the write
  /// failed; the next call tries again. A sync that fails is reported by `error` later.
  bool saveIfNeeded(Sync sync = Sync::whenDue);
  /// Enters saving mode and writes the file. Returns whether it was written; a session without
  /// lines is not.
  bool save();
  /// The file is being brought onto the disk.
  bool isSyncing() const { return sync_.isRunning(); }
  /// Completes when the file is on the disk, or when that has failed.
  OneShot<bool> synced() { return sync_.finished(); }
  /// The file at `url` was deleted. If it is this session's, the session leaves saving mode.
  void fileWasDeleted(const QUrl& url);
  /// The deletion of the file at `url` was undone. If it is this session's, the session returns to
  /// saving mode, and the lines since then are written.
  void fileIsBack(const QUrl& url);

 Q_SIGNALS:
  void isSavingChanged();
  void urlChanged();
  void errorChanged();

 private:
  void syncFailed(const FileError& error);
  void setFailure(std::optional<QString>& failure, const std::optional<QString>& text);
  void setSaving(bool isSaving);
  void setUrl(const std::optional<QUrl>& url);

  const CaptionSession& session_;
  SessionStore store_;
  SessionEncoder encoder_;
  bool isSaving_;
  std::optional<QUrl> url_;
  /// This session's file that was deleted, until there is another one.
  std::optional<QUrl> deletedUrl_;
  // Two, because a sync that succeeds does not write the lines that a write has missed.
  std::optional<QString> writeFailure_;
  std::optional<QString> syncFailure_;
  // Last: its destructor brings the file onto the disk.
  SessionSync sync_;
};

}  // namespace velun
