// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"

#include <optional>
#include <QMap>
#include <QString>

namespace velun {

/// A finished line as other programs get it.
struct FeedLine {
  /// Names the line in later announcements.
  QString id;
  QString text;
  /// When it was finished.
  std::optional<Instant> time = {};
  /// The locale that was spoken, such as "en_US"; may be empty.
  QString language = {};
  /// Who spoke, as an estimate: "Speaker 1" in the interface language, or a name of the user's;
  /// empty if unknown.
  QString speaker = {};
  /// The name of the input while both are captioned; otherwise empty.
  QString input = {};
  /// By language.
  QMap<QString, QString> translations = {};

  bool operator==(const FeedLine&) const = default;
};

/// Captions for other programs of the user's session. It is closed at first; while it is closed
/// nothing of the captions is kept or can be read. Main thread.
class CaptionFeed {
 public:
  enum class State { stopped, starting, running, stopping };

  virtual ~CaptionFeed() = default;

  /// Begins to offer captions; there is no line yet.
  virtual void open(State state) = 0;
  virtual void close() = 0;

  // Only while it is open:

  virtual void setState(State state) = 0;
  /// The unfinished line; empty: there is none any more.
  virtual void setDraft(const QString& text) = 0;
  virtual void addLine(const FeedLine& line) = 0;
  /// A line that has been added got a translation.
  virtual void addTranslation(const QString& id, const QString& language, const QString& text) = 0;
  /// The session was replaced; its lines cannot be asked for any more.
  virtual void clear() = 0;
};

}  // namespace velun
