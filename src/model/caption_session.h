// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/line.h"
#include "model/session_format.h"
#include "model/transcript_content.h"

#include <QByteArray>

namespace velun {

/// The title of a session made now, in the interface language in force.
QString defaultSessionTitle();

/// The wall clock, to the microsecond.
Instant currentInstant();

/// One caption session: the growing list of finished lines. Identified by `id`.
struct CaptionSession {
  int schemaVersion = 1;
  QUuid id = QUuid::createUuid();
  Instant startedAt = currentInstant();
  /// Absent while the session runs.
  std::optional<Instant> endedAt;
  QString title = defaultSessionTitle();
  /// Oldest first; only ever appended to.
  std::vector<Line> lines;

  bool operator==(const CaptionSession&) const = default;

  /// Every language that a line is translated into, in ascending order, without repeats.
  std::vector<QString> translationLanguages() const;

  /// Whether a line has a translation, a legacy one included.
  bool hasTranslations() const;

  /// The bare texts, for the clipboard: no title, times or labels. An absent language is all.
  QString transcript(TranscriptContent content, const std::optional<QString>& language) const;

  /// The whole document in UTF-8. `json` ignores content and language. An absent language is all.
  QByteArray exportAs(SessionFormat format, TranscriptContent content,
                      const std::optional<QString>& language) const;
};

}  // namespace velun
