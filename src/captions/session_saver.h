// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/session_file/session_encoder.h"
#include "model/session_store.h"

#include <cstddef>
#include <optional>
#include <QObject>
#include <QString>
#include <QUrl>

namespace velun {

/// Keeps the file of the current session. In saving mode every change is written at once; outside
/// it nothing is. Main thread.
class SessionSaver final : public QObject {
  Q_OBJECT

 public:
  /// `session` must outlive the saver.
  SessionSaver(const CaptionSession& session, SessionStore store, bool isSaving,
               QObject* parent = nullptr);

  const SessionStore& store() const { return store_; }
  /// The session is in saving mode.
  bool isSaving() const { return isSaving_; }
  /// The session's file; nullopt before the first write and after the file was deleted.
  const std::optional<QUrl>& url() const { return url_; }
  /// Why the last write failed; nullopt if it succeeded.
  const std::optional<QString>& error() const { return error_; }
  /// Whether there are lines that are in no file.
  bool hasUnsavedLines() const;

  /// The session was replaced by an empty one.
  void reset(bool isSaving);
  /// The line at `index` has changed since it was last written.
  void lineChanged(std::size_t index) { encoder_.lineChanged(index); }

  /// Writes the file if the session is in saving mode and has lines. Returns false when the write
  /// failed; the next call tries again.
  bool saveIfNeeded(SessionStore::Flush flush = SessionStore::Flush::no);
  /// Enters saving mode and writes the file. Returns whether it was written; a session without
  /// lines is not.
  bool save();
  /// The file at `url` was deleted. If it is this session's, the session leaves saving mode.
  void fileWasDeleted(const QUrl& url);

 Q_SIGNALS:
  void isSavingChanged();
  void urlChanged();
  void errorChanged();

 private:
  void setSaving(bool isSaving);
  void setUrl(const std::optional<QUrl>& url);
  void setError(const std::optional<QString>& error);

  const CaptionSession& session_;
  SessionStore store_;
  SessionEncoder encoder_;
  bool isSaving_;
  std::optional<QUrl> url_;
  std::optional<QString> error_;
};

}  // namespace velun
