// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/session_store.h"
#include "platform/foundation/file_error.h"

#include <functional>
#include <memory>
#include <optional>
#include <QList>
#include <QObject>
#include <QUrl>
#include <vector>

namespace velun {

/// The sessions of the library in display order. Entries are shared, never changed, so that a
/// worker can read them too.
using SavedSessions = std::vector<std::shared_ptr<const SavedSession>>;

/// The library: every session file of the sessions folder and those opened from elsewhere during
/// this run, newest first, and which one is selected. Main thread; files are listed by a worker.
class HistoryViewModel final : public QObject {
  Q_OBJECT

 public:
  /// Moves a file to the trash; throws `Failure` and leaves the file where it is when it cannot.
  using Trash = std::function<void(const QUrl&)>;

  HistoryViewModel(SessionStore store, Trash trash, QObject* parent = nullptr);
  ~HistoryViewModel() override;

  const SavedSessions& sessions() const { return sessions_; }
  const std::optional<QUrl>& selection() const { return selection_; }
  /// Null when nothing is selected.
  std::shared_ptr<const SavedSession> selectedSession() const;
  /// What the error banner shows, in the interface language.
  const std::optional<QString>& error() const { return error_; }
  const SessionStore& store() const { return store_; }
  const QList<QUrl>& openedFiles() const { return openedFiles_; }
  bool isReloading() const { return isReloading_; }

  /// Selects a listed session; none, or one that is not listed, selects nothing.
  void select(const std::optional<QUrl>& url);

  /// Lists everything again. Returns at once; `sessionsChanged` follows.
  void reload();

  /// Adds a session file from anywhere and selects it. Throws the store's error.
  void open(const QUrl& url);

  /// Moves the selected session's file to the trash and selects its neighbour in `visible`, the
  /// shown sessions in display order. Gives the deleted file; none when the selection is not among
  /// the visible. Throws `Failure`, with nothing changed.
  std::optional<QUrl> deleteSelection(const QList<QUrl>& visible);

 Q_SIGNALS:
  void sessionsChanged();
  void selectionChanged();
  void errorChanged();
  void reloaded();

 private:
  struct Listing;

  static Listing listed(const SessionStore& store, const QList<QUrl>& opened,
                        const QString& legacyTitle);
  void takeListing(Listing listing);
  void restartReload();
  void setSelection(const std::optional<QUrl>& url);
  /// Words the problems of the last listing.
  void presentError();
  bool isListed(const QUrl& url) const;
  /// Where the same file is listed; none when it is not.
  std::optional<QUrl> listedUnderAnotherName(const QUrl& url) const;

  SessionStore store_;
  Trash trash_;
  SavedSessions sessions_;
  std::optional<QUrl> selection_;
  std::optional<FileError> failure_;
  int unreadableCount_ = 0;
  std::optional<QString> error_;
  QList<QUrl> openedFiles_;
  bool isReloading_ = false;
  /// Names the latest listing; an earlier one that still arrives is dropped.
  quint64 reloadToken_ = 0;
};

/// The same file gives the same text, whichever way its location is written.
QString canonicalPath(const QUrl& url);

}  // namespace velun
