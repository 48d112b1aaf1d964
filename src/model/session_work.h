// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <chrono>
#include <cstddef>
#include <QString>
#include <utility>
#include <vector>

namespace velun {

/// A title made of a sentence: cut between words where it is longer than a row of a list.
QString titleFromSentence(const QString& sentence);

/// A new session with the lines of all sessions in the order of their starts, and the title of the
/// first. There must be at least one.
CaptionSession combined(std::vector<CaptionSession> sessions);

/// What a session's statistics count.
struct SessionStatistics {
  std::size_t words = 0;
  std::size_t sentences = 0;
  std::size_t translatedSentences = 0;
  /// How many sentences of each speaker there are, in the order of their first ones.
  std::vector<std::pair<QString, std::size_t>> speakers;
  /// From the start to the end, or to the last line while the end is unknown.
  std::chrono::seconds length{0};
};

/// Words are counted as the language of the line divides them, also without spaces between them.
SessionStatistics statistics(const CaptionSession& session);

/// The same as a few lines of text in the interface language.
QString statisticsText(const CaptionSession& session);

}  // namespace velun
