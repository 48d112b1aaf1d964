// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_recovery.h"

#include "model/session_file/session_file.h"
#include "model/session_file/session_problem.h"
#include "platform/foundation/atomic_file.h"
#include "platform/foundation/file_access.h"
#include "platform/foundation/file_error.h"
#include "platform/foundation/set_aside.h"
#include "platform/foundation/synced_copy.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <QFile>
#include <unistd.h>

namespace velun {

namespace {

enum class Contents {
  missing,
  /// Of size 0 or only zeros: the name reached the disk, the bytes did not.
  empty,
  damaged,
  valid,
  /// Nothing is known about it.
  unreadable,
};

/// Whether a session that is refused for this reason is complete.
bool isComplete(const SessionProblem& problem) {
  using Kind = SessionProblem::Kind;
  return problem.kind == Kind::newerVersion || problem.kind == Kind::tooManyLines ||
         problem.kind == Kind::tooManyLanguages;
}

Contents contentsOf(const QByteArray& bytes) {
  try {
    decodeSession(bytes);
    return Contents::valid;
  } catch (const SessionProblem& problem) {
    if (isComplete(problem)) return Contents::valid;
  }
  const bool isEmpty = std::all_of(bytes.begin(), bytes.end(), [](char c) { return c == '\0'; });
  return isEmpty ? Contents::empty : Contents::damaged;
}

Contents contentsOf(const QString& path) {
  try {
    return contentsOf(readWholeFile(path, kMaxSessionFileSize, kSessionFilePadding));
  } catch (const FileError& error) {
    return error.code().value() == ENOENT ? Contents::missing : Contents::unreadable;
  } catch (const std::exception&) {
    return Contents::unreadable;
  }
}

/// Replaces a file that has lost its contents by its copy.
void restore(const FoundCopy& found, Contents copy) {
  if (copy == Contents::valid) {
    std::rename(QFile::encodeName(found.copy).constData(),
                QFile::encodeName(found.file).constData());
  } else {
    // There was no version on the disk yet.
    ::unlink(QFile::encodeName(found.file).constData());
    ::unlink(QFile::encodeName(found.copy).constData());
  }
}

void recover(const FoundCopy& found) {
  const Contents file = contentsOf(found.file);
  if (file == Contents::unreadable) return;
  if (file == Contents::valid || file == Contents::missing) {
    // Missing: the user has deleted it.
    ::unlink(QFile::encodeName(found.copy).constData());
    return;
  }
  const Contents copy = contentsOf(found.copy);
  if (copy != Contents::valid && copy != Contents::empty) return;
  if (file == Contents::damaged && !keepCopyAside(found.file, QStringLiteral(".damaged"))) {
    return;
  }
  restore(found, copy);
}

}  // namespace

void recoverSessions(const QString& folder) {
  const std::vector<FoundCopy> copies = findSyncedCopies(folder);
  for (const FoundCopy& found : copies) recover(found);
  if (!copies.empty()) syncFolder(folder);
  removeAbandonedWrites(folder);
}

}  // namespace velun
