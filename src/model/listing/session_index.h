// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/listing/listed_session.h"

#include <optional>
#include <QByteArray>
#include <QString>

namespace velun {

/// What the listing knows of the sessions in a folder, kept in a file so that the next start needs
/// not read them all. Never the truth: an entry counts only while its file has the same stamp, and
/// without the index, or with a damaged one, the sessions are read again. Any thread, any number of
/// programs.
struct SessionIndex {
  /// Of the index; nothing is read or written if it is empty.
  QString path;
  /// Of the sessions, without a slash at the end.
  QString folder;

  /// The indexed sessions in any order; empty without a usable index. An unusable one is removed.
  SavedSessions read() const;

  /// Replaces the index if it is not that of `sessions`. Left out are files of other folders,
  /// transcripts of an earlier version, and files that have changed or gone since they were listed,
  /// so that nothing of a deleted session stays. Only the user can read the index. If it cannot be
  /// replaced, it is removed.
  void write(const SavedSessions& sessions, Instant now) const;
};

/// The bytes of an index. All sessions must be files of `folder` and have a stamp.
QByteArray encodeIndex(const SavedSessions& sessions, const QString& folder);

/// Nothing for bytes that are damaged, of another version or for another folder.
std::optional<SavedSessions> decodeIndex(const QByteArray& bytes, const QString& folder);

/// Sets the checksum of an index; bytes that are too short stay as they are.
void putIndexChecksum(QByteArray& bytes);

}  // namespace velun
