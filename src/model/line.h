// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/audio_input.h"
#include "platform/foundation/clock.h"

#include <chrono>
#include <map>
#include <optional>
#include <QString>
#include <QUuid>
#include <utility>
#include <vector>

namespace velun {

/// Orders texts by code point; `QString` compares UTF-16 units, which differs above U+FFFF.
struct CodePointOrder {
  bool operator()(const QString& left, const QString& right) const;
};

/// Translated texts by target-language identifier, in ascending order.
using Translations = std::map<QString, QString, CodePointOrder>;

/// Of a time within a session: more than thirty years. Files with later times are refused.
inline constexpr std::chrono::seconds kMaxLineTime{1'000'000'000};

/// One finished caption line. Identified by `id`, never by its position.
struct Line {
  QUuid id = QUuid::createUuid();
  /// When the line was finished; absent on imported lines.
  std::optional<Instant> time;
  /// The recognized text, in the spoken language.
  QString text;
  /// The recognizer's locale identifier, such as "en_US"; absent on imported lines.
  std::optional<QString> sourceLanguage;
  std::optional<AudioInput> input;
  Translations translations;
  /// The time as it stood in a transcript of an earlier version; shown instead of `time`.
  std::optional<QString> legacyTimestamp;
  /// A translation into an unknown language, from a transcript of an earlier version.
  std::optional<QString> legacyTranslation;
  /// When the words were said, since the session's start. Absent where the recognizer did not say.
  std::optional<std::chrono::milliseconds> start = {};
  std::optional<std::chrono::milliseconds> end = {};
  /// The text as it was recognized, if `text` was corrected by hand.
  std::optional<QString> original = {};
  /// Who spoke, as an estimate by the voice (speaker.h); absent if unknown.
  std::optional<QString> speaker = {};

  bool operator==(const Line&) const = default;

  /// Replaces the text by one that the user wrote, and keeps the recognized one as `original`. With
  /// the recognized text the line is as it was before it was corrected.
  void correct(const QString& corrected);

  /// The time shown beside the line: hours, minutes and seconds in the interface language, in the
  /// user's time zone; empty if there is no time.
  QString timestamp() const;

  /// (language identifier, text) pairs: the one in `language`, or all in ascending order when it
  /// is absent; a legacy translation always comes last, under the empty identifier.
  std::vector<std::pair<QString, QString>> translatedTexts(
      const std::optional<QString>& language) const;
};

}  // namespace velun
