// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/history_view_model.h"

#include "language/localization.h"
#include "model/file_error_text.h"
#include "model/session_file/session_file.h"
#include "model/session_files.h"
#include "model/speaker.h"
#include "platform/foundation/atomic_file.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/file_access.h"

#include <algorithm>
#include <QFileInfo>
#include <QSet>

namespace velun {

/// A file that was read on a pool thread.
struct HistoryViewModel::ReadFile {
  static ReadFile read(const QUrl& url, const QString& legacyTitle) {
    ReadFile file{url, std::nullopt, nullptr, nullptr};
    if (!url.isLocalFile()) return file;
    try {
      file.session = readSessionFile(url.toLocalFile(), legacyTitle);
      file.entry = listed(url, *file.session);
    } catch (...) {
      file.error = std::current_exception();
    }
    return file;
  }

  /// Why it could not be read. Main thread.
  QString problem() const {
    return error ? readingErrorText(error, url.toLocalFile()) : remoteFileText(url);
  }

  QUrl url;
  std::optional<CaptionSession> session;
  std::shared_ptr<const ListedSession> entry;
  /// Null for a file on another computer.
  std::exception_ptr error;
};

namespace {

using Entry = std::shared_ptr<const ListedSession>;

/// The selection after the entry at `index` was removed: the next one, else the one before it.
std::optional<QUrl> neighbourOf(qsizetype index, const QList<QUrl>& visible) {
  if (index + 1 < visible.size()) return visible[index + 1];
  if (index > 0) return visible[index - 1];
  return std::nullopt;
}

}  // namespace

HistoryViewModel::HistoryViewModel(SessionStore store, Trash trash)
    : store_(std::move(store)), trash_(std::move(trash)) {
  connect(&Localization::shared(), &Localization::languageChanged, this,
          &HistoryViewModel::presentError);
}

std::shared_ptr<const SavedSession> HistoryViewModel::selectedSession() const {
  const auto found = std::find_if(sessions_.begin(), sessions_.end(), [this](const Entry& entry) {
    return selection_ && entry->url == *selection_;
  });
  return shown_.of(found == sessions_.end() ? nullptr : *found);
}

std::optional<std::vector<CaptionSession>> HistoryViewModel::read(
    const SavedSessions& sessions) const {
  std::vector<QString> paths;
  for (const Entry& entry : sessions) paths.push_back(entry->url.toLocalFile());
  std::vector<CaptionSession> read;
  for (auto& session : readSessionFiles(paths, defaultSessionTitle())) {
    if (!session) return std::nullopt;
    read.push_back(std::move(*session));
  }
  return read;
}

void HistoryViewModel::select(const std::optional<QUrl>& url) {
  setSelection(url && isListed(*url) ? url : std::nullopt);
  // The listing says why it cannot be read.
  if (selection_ && !selectedSession()) reload();
}

void HistoryViewModel::reload() {
  // The default title is localized here: the interface language may change during the job.
  listing_.start(
      [store = store_, opened = openedFiles_, title = defaultSessionTitle(), known = sessions_](
          const std::stop_token&) { return listSessions(store, opened, title, known); },
      [this](SessionListing listing) { applyListing(std::move(listing)); });
}

void HistoryViewModel::applyListing(SessionListing listing) {
  failure_ = listing.failure;
  unreadableCount_ = listing.unreadableCount;
  if (!failure_) {
    sessions_ = std::move(listing.sessions);
    Q_EMIT sessionsChanged();
    if (selection_ && !isListed(*selection_)) setSelection(listedLocation(*selection_));
  }
  presentError();
  Q_EMIT reloaded();
}

void HistoryViewModel::restartReload() {
  // A running listing has read outdated files.
  if (isReloading()) reload();
}

void HistoryViewModel::open(const QList<QUrl>& urls) {
  unread_ += urls;
  if (!opening_.isRunning()) readNextFiles();
}

void HistoryViewModel::readNextFiles() {
  opening_.start(
      [urls = std::exchange(unread_, {}), title = defaultSessionTitle()](const std::stop_token&) {
        std::vector<ReadFile> files;
        for (const QUrl& url : urls) files.push_back(ReadFile::read(url, title));
        return files;
      },
      [this](std::vector<ReadFile> files) { applyFiles(std::move(files)); });
}

void HistoryViewModel::applyFiles(std::vector<ReadFile> files) {
  QStringList problems;
  int count = 0;
  for (ReadFile& file : files) {
    if (file.entry) {
      add(std::move(file));
      ++count;
    } else {
      problems.append(file.problem());
    }
  }
  if (count > 0) restartReload();
  if (!unread_.isEmpty()) readNextFiles();
  Q_EMIT filesOpened(count, problems);
}

void HistoryViewModel::add(ReadFile file) {
  const QString path = canonicalPath(file.url);
  const auto isSameFile = [&path](const QUrl& other) {
    return canonicalPath(other) == path;
  };
  const auto before = std::find_if(sessions_.begin(), sessions_.end(),
                                   [&](const Entry& entry) { return isSameFile(entry->url); });
  const QUrl known = before == sessions_.end() ? file.url : (*before)->url;
  if (before != sessions_.end()) sessions_.erase(before);
  const bool wasOpened = std::any_of(openedFiles_.begin(), openedFiles_.end(), isSameFile);
  if (!wasOpened) openedFiles_.append(known);
  const Entry entry = std::make_shared<const ListedSession>(
      ListedSession{known, file.entry->summary, file.entry->signature});
  shown_.keep(entry, std::move(*file.session));
  sessions_.insert(std::upper_bound(sessions_.begin(), sessions_.end(), entry, isBefore), entry);
  Q_EMIT sessionsChanged();
  setSelection(known);
}

std::optional<QUrl> HistoryViewModel::deleteSelection(const QList<QUrl>& visible) {
  if (!selection_) return std::nullopt;
  const QUrl url = *selection_;
  const qsizetype index = visible.indexOf(url);
  if (index < 0 || !isListed(url)) return std::nullopt;
  deleted_.clear();
  discard(url);
  const std::optional<QUrl> neighbour = neighbourOf(index, visible);
  Q_EMIT sessionsChanged();
  select(neighbour);
  restartReload();
  return url;
}

void HistoryViewModel::discard(const QUrl& url) {
  std::optional<QByteArray> bytes;
  try {
    bytes = readWholeFile(url.toLocalFile(), kMaxSessionFileSize);
  } catch (const FileError&) {
    // It can still be moved to the trash, from where the file manager brings it back.
  }
  const QString path = canonicalPath(url);
  trash_(url);
  const bool wasOpened = openedFiles_.removeIf([&path](const QUrl& other) {
    return canonicalPath(other) == path;
  }) > 0;
  if (bytes) deleted_.push_back({url, std::move(*bytes), wasOpened});
  std::erase_if(sessions_, [&url](const Entry& entry) { return entry->url == url; });
}

QList<QUrl> HistoryViewModel::deleteSessions(const QList<QUrl>& urls, std::exception_ptr& failed) {
  deleted_.clear();
  QList<QUrl> moved;
  try {
    for (const QUrl& url : urls) {
      if (!isListed(url)) continue;
      discard(url);
      moved.append(url);
    }
  } catch (...) {
    failed = std::current_exception();
  }
  Q_EMIT sessionsChanged();
  if (selection_ && !isListed(*selection_)) setSelection(std::nullopt);
  restartReload();
  return moved;
}

QList<QUrl> HistoryViewModel::undoDelete(std::exception_ptr& failed) {
  QList<QUrl> restored;
  try {
    while (!deleted_.empty()) {
      const auto& [url, bytes, wasOpened] = deleted_.back();
      // Captions that go on have written their session again, with more lines.
      const QString path = url.toLocalFile();
      if (!QFileInfo::exists(path)) writeFileAtomically(path, bytes, true);
      if (wasOpened) openedFiles_.append(url);
      restored.append(url);
      deleted_.pop_back();
    }
  } catch (const FileError& error) {
    failed = std::make_exception_ptr(Failure(fileErrorText(error)));
  }
  reload();
  return restored;
}

void HistoryViewModel::rename(const QUrl& url, const QString& title) {
  const QString trimmed = title.trimmed();
  rewrite(url, [&trimmed](CaptionSession& session) {
    session.title = trimmed.isEmpty() ? defaultSessionTitle() : trimmed;
  });
}

void HistoryViewModel::correctLine(const QUrl& url, const Line& line, const QString& text) {
  rewrite(url, [&](CaptionSession& session) {
    // In a file from elsewhere several lines may have the same id.
    const auto found = std::ranges::find_if(session.lines, [&line](const Line& each) {
      return each.id == line.id && each.text == line.text;
    });
    if (found == session.lines.end()) {
      throw Failure(L("The line isn’t in the session file any more.",
                      "이 문장은 이제 기록 파일에 없습니다."));
    }
    found->correct(text);
  });
}

void HistoryViewModel::renameSpeaker(const QUrl& url, const QString& from, const QString& to) {
  rewrite(url, [&](CaptionSession& session) { velun::renameSpeaker(session.lines, from, to); });
}

void HistoryViewModel::rewrite(const QUrl& url,
                               const std::function<void(CaptionSession&)>& change) {
  const auto found = std::find_if(sessions_.begin(), sessions_.end(),
                                  [&url](const Entry& entry) { return entry->url == url; });
  if (found == sessions_.end()) return;
  const QString path = url.toLocalFile();
  if (isLegacyFile(path)) {
    throw Failure(
        L("A transcript of an earlier version can’t be changed. Save it as a session file first.",
          "이전 버전의 기록은 바꿀 수 없습니다. 먼저 기록 파일로 저장하세요."));
  }
  try {
    // Again: it may have changed since it was listed.
    CaptionSession changed = readSessionFile(path, defaultSessionTitle());
    change(changed);
    writeFileAtomically(path, encodeSession(changed), true);
    *found = listed(url, changed);
    if (selection_ == url) shown_.keep(*found, std::move(changed));
  } catch (...) {
    throw Failure(readingErrorText(std::current_exception(), path));
  }
  Q_EMIT sessionsChanged();
  restartReload();
}

void HistoryViewModel::setSelection(const std::optional<QUrl>& url) {
  if (selection_ == url) return;
  selection_ = url;
  Q_EMIT selectionChanged();
}

void HistoryViewModel::presentError() {
  std::optional<QString> error;
  if (failure_) {
    error = fileErrorText(*failure_);
  } else if (unreadableCount_ == 1) {
    error = L("Couldn’t read 1 session. The original file is still in the sessions folder.",
              "1개 기록을 읽지 못했습니다. 원본 파일은 기록 폴더에 있습니다.");
  } else if (unreadableCount_ > 1) {
    error = L("Couldn’t read %1 sessions. The original files are still in the sessions folder.",
              "%1개 기록을 읽지 못했습니다. 원본 파일은 기록 폴더에 있습니다.")
                .arg(unreadableCount_);
  }
  if (error_ == error) return;
  error_ = error;
  Q_EMIT errorChanged();
}

std::optional<QUrl> HistoryViewModel::listedLocation(const QUrl& url) const {
  const QString path = canonicalPath(url);
  const auto found = std::find_if(sessions_.begin(), sessions_.end(), [&path](const Entry& entry) {
    return canonicalPath(entry->url) == path;
  });
  return found == sessions_.end() ? std::nullopt : std::optional((*found)->url);
}

bool HistoryViewModel::isListed(const QUrl& url) const {
  return std::any_of(sessions_.begin(), sessions_.end(),
                     [&url](const Entry& entry) { return entry->url == url; });
}

}  // namespace velun
