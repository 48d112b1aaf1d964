// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/export_options.h"
#include "model/line.h"

#include <QByteArray>

namespace velun {

/// The title of a new session in the current interface language.
QString defaultSessionTitle();

/// The wall clock, to the microsecond.
Instant currentInstant();

/// One caption session: the growing list of finished lines. Identified by `id`.
struct CaptionSession {
  int schemaVersion = 1;
  QUuid id = QUuid::createUuid();
  Instant startedAt = currentInstant();
  /// Absent while the session is running.
  std::optional<Instant> endedAt;
  QString title = defaultSessionTitle();
  /// In the order in which they were said.
  std::vector<Line> lines;
  /// The names of the inputs, in a session for which both were captioned at once.
  std::optional<QString> computerName = {};
  std::optional<QString> microphoneName = {};

  bool operator==(const CaptionSession&) const = default;

  /// The name of the line's input; empty unless both were captioned at once.
  QString inputName(const Line& line) const;

  /// `text` after the name of the line's input, as in "Me: Hello."
  QString named(const Line& line, const QString& text) const;

  /// Every language that a line is translated into, in ascending order, without repeats.
  std::vector<QString> translationLanguages() const;

  /// Whether a line has a translation, a legacy one included.
  bool hasTranslations() const;

  /// The texts only, for the clipboard: no title, times or labels. All languages if absent.
  QString transcript(TranscriptContent content, const std::optional<QString>& language) const;

  /// The document in UTF-8.
  QByteArray exportAs(const ExportOptions& options) const;
};

}  // namespace velun
