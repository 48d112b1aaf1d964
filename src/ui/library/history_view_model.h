// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/listing/session_listing.h"
#include "model/session_store.h"
#include "platform/foundation/file_error.h"
#include "platform/foundation/latest_job.h"
#include "ui/library/shown_session.h"

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <QByteArray>
#include <QList>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <utility>
#include <vector>

namespace velun {

/// The saved sessions: every session file in the sessions folder and every file opened from
/// elsewhere during this run, newest first, and the selection. Main thread; the files are read on
/// the thread pool.
class HistoryViewModel final : public QObject {
  Q_OBJECT

 public:
  /// Moves a file to the trash. Throws `Failure` and leaves the file in place when that fails.
  using Trash = std::function<void(const QUrl&)>;

  HistoryViewModel(SessionStore store, Trash trash);

  const SavedSessions& sessions() const { return sessions_; }
  const std::optional<QUrl>& selection() const { return selection_; }
  /// With its transcript, which is read at the first call. Null when nothing is selected, or when
  /// the file cannot be read any more.
  std::shared_ptr<const SavedSession> selectedSession() const;
  /// Reads several sessions, which takes a while for many. Nothing if one cannot be read.
  std::optional<std::vector<CaptionSession>> read(const SavedSessions& sessions) const;
  /// The text of the error banner, in the interface language; empty without an error.
  const std::optional<QString>& error() const { return error_; }
  const SessionStore& store() const { return store_; }
  const QList<QUrl>& openedFiles() const { return openedFiles_; }
  bool isReloading() const { return listing_.isRunning(); }

  /// Selects a listed session. Nullopt or an unlisted file clears the selection.
  void select(const std::optional<QUrl>& url);

  /// Lists everything again. Returns at once; `sessionsChanged` and `reloaded` follow.
  void reload();

  /// Adds session files from any folder and selects the last one. Returns at once; `filesOpened`
  /// follows when they are read.
  void open(const QList<QUrl>& urls);
  /// Files are being opened.
  bool isOpening() const { return opening_.isRunning(); }

  /// Moves the selected session's file to the trash and selects its neighbour in `visible`, the
  /// shown sessions in display order. Returns the deleted file, or nullopt when the selection is
  /// not in `visible`. Throws `Failure` and changes nothing when the file cannot be moved.
  std::optional<QUrl> deleteSelection(const QList<QUrl>& visible);
  /// Moves several files to the trash. Returns those that were moved, also when `failed` gets the
  /// reason why the next one could not be.
  QList<QUrl> deleteSessions(const QList<QUrl>& urls, std::exception_ptr& failed);
  /// Whether the last deletion can be undone.
  bool canUndoDelete() const { return !deleted_.empty(); }
  /// Writes the files of the last deletion again; their copies stay in the trash. Returns those
  /// that are back, also when `failed` gets the reason why the next one could not be written.
  QList<QUrl> undoDelete(std::exception_ptr& failed);

  /// Writes a session file again with another title; an empty one is the default title. Throws
  /// `Failure`: transcripts of an earlier version have no place for a title.
  void rename(const QUrl& url, const QString& title);
  /// Writes a session file again with a line that is corrected by hand, see `Line::correct`. Throws
  /// `Failure`, also for transcripts of an earlier version, and if the file has no such line any
  /// more.
  void correctLine(const QUrl& url, const Line& line, const QString& text);
  /// Renames a speaker in all lines of the session, see `velun::renameSpeaker`. Throws `Failure`.
  void renameSpeaker(const QUrl& url, const QString& from, const QString& to);

 Q_SIGNALS:
  void sessionsChanged();
  void selectionChanged();
  void errorChanged();
  void reloaded();
  /// Files were opened, or could not be, for the reasons in `problems`.
  void filesOpened(int count, const QStringList& problems);

 private:
  struct ReadFile;
  struct DeletedFile {
    QUrl url;
    QByteArray bytes;
    bool wasOpened = false;
  };

  void applyListing(SessionListing listing);
  void restartReload();
  void readNextFiles();
  void applyFiles(std::vector<ReadFile> files);
  void add(ReadFile file);
  /// Writes a listed file again after `change`. Throws `Failure`.
  void rewrite(const QUrl& url, const std::function<void(CaptionSession&)>& change);
  /// Keeps the bytes of a file, moves it to the trash and takes it out of the lists.
  void discard(const QUrl& url);
  void setSelection(const std::optional<QUrl>& url);
  /// Updates the error text from the last listing.
  void presentError();
  bool isListed(const QUrl& url) const;
  /// The listed location of the same file, which may differ (symbolic links); nullopt when the file
  /// is not listed.
  std::optional<QUrl> listedLocation(const QUrl& url) const;

  SessionStore store_;
  Trash trash_;
  SavedSessions sessions_;
  std::optional<QUrl> selection_;
  mutable ShownSession shown_;
  std::optional<FileError> failure_;
  int unreadableCount_ = 0;
  std::optional<QString> error_;
  QList<QUrl> openedFiles_;
  /// The files of the last deletion.
  std::vector<DeletedFile> deleted_;
  /// Files to open after those that are being read.
  QList<QUrl> unread_;
  LatestJob listing_;
  LatestJob opening_;
};

}  // namespace velun
