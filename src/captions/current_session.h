// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/pending_translations.h"
#include "captions/speaker_tracker.h"
#include "captions/transcript_cache.h"
#include "model/caption_session.h"

#include <cstddef>
#include <optional>
#include <QHash>
#include <QSet>
#include <QUuid>
#include <vector>

namespace velun {

/// The session that captions are added to, and what is derived from its lines. Each change updates
/// only what depends on the changed line. Main thread.
class CurrentSession final {
 public:
  /// An empty session.
  explicit CurrentSession(Instant startedAt);

  const CaptionSession& session() const { return session_; }
  const std::vector<Line>& lines() const { return session_.lines; }

  /// Replaces the session by a new, empty one.
  void reset(Instant startedAt);
  /// Returns whether a time has changed.
  bool setTimes(Instant startedAt, const std::optional<Instant>& endedAt);
  /// Returns whether the title has changed; an empty one is the default title.
  bool setTitle(const QString& title);
  /// Names the inputs; returns whether that is new. See `CaptionSession::computerName`.
  bool setInputNames(const QString& computer, const QString& microphone);
  /// Adds a line that was said before others of the other input, at its place by time of speech but
  /// not before the line at `first`. Returns its index.
  std::size_t insertBySpeech(Line line, std::size_t first);
  /// Stores a translation, over an earlier one into the same language. Returns the index of the
  /// line; nullopt if there is no such line.
  std::optional<std::size_t> setTranslation(const QUuid& id, const QString& language,
                                            const QString& text);

  /// Corrects a line by hand, see `Line::correct`. Returns the same.
  std::optional<std::size_t> correctLine(const QUuid& id, const QString& text);

  /// Tells whose voices its lines have.
  SpeakerTracker& speakers() { return speakers_; }
  /// Renames a speaker in all lines, also those to come, see `renameSpeaker`. Returns the indices
  /// of the lines that have changed.
  std::vector<std::size_t> renameSpeaker(const QString& from, const QString& to);

  /// The ids of the lines spoken in the locale `sourceID` that have no text in `targetID`.
  const QSet<QUuid>& pendingTranslationIDs(const QString& sourceID, const QString& targetID) const;
  /// The same text as `CaptionSession::transcript`.
  const QString& transcript(TranscriptContent content, const QString& language) const;

 private:
  CaptionSession session_;
  SpeakerTracker speakers_;
  QHash<QUuid, std::size_t> indexOfLine_;
  mutable PendingTranslations pending_;
  mutable TranscriptCache transcript_;
};

}  // namespace velun
