// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"
#include "model/file_stamp.h"
#include "model/listing/text_signature.h"

#include <memory>
#include <optional>
#include <QString>
#include <QUrl>
#include <set>
#include <vector>

namespace velun {

/// What the list of saved sessions, its order and its filters need to know of a session.
struct SessionSummary {
  QString title;
  Instant startedAt;
  std::optional<Instant> endedAt;
  std::size_t lineCount = 0;
  bool hasTranslations = false;
  /// The begin of the first line.
  QString firstWords;
  /// The locale identifiers of the lines, in ascending order, without repeats.
  std::vector<QString> languages;
  /// Where the lines were heard.
  std::set<AudioInput> inputs;

  bool operator==(const SessionSummary&) const = default;
};

SessionSummary summaryOf(const CaptionSession& session);

/// A session file without its transcript, so that a library of thousands fits into the memory.
/// Identified by `url`.
struct ListedSession {
  QUrl url;
  SessionSummary summary;
  /// Of the text that a search reads.
  TextSignature signature;
  /// Of the file that was read; absent where a change could go unnoticed.
  std::optional<FileStamp> stamp = {};

  bool operator==(const ListedSession&) const = default;
};

/// Listed sessions in display order. Entries are shared and immutable, so that pool threads can
/// read them too.
using SavedSessions = std::vector<std::shared_ptr<const ListedSession>>;

/// Any thread.
std::shared_ptr<const ListedSession> listed(const QUrl& url, const CaptionSession& session,
                                            const std::optional<FileStamp>& stamp = {});

/// What a search reads of a session: its title and its whole transcript with all translations,
/// folded.
QString searchableText(const CaptionSession& session);

/// Whether `left` comes before `right` in a listing: newest first, equal starts by file name, then
/// by folder. A total order, so that reading a file again never moves it.
bool isBefore(const std::shared_ptr<const ListedSession>& left,
              const std::shared_ptr<const ListedSession>& right);

}  // namespace velun
