// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/speech_recognition_event.h"

#include <deque>
#include <optional>
#include <QString>
#include <vector>

namespace velun {

/// Takes out of the microphone's texts what loudspeakers played at the same time. It compares words
/// and their times with those of the computer's texts, so it works with every recognizer.
///
/// Only long runs of the same words are an echo at first. After one was found, shorter ones are
/// too, for a minute: who uses headphones may well repeat some words of the computer.
class EchoFilter {
 public:
  /// Another run begins.
  void reset();

  /// The computer's texts, as they come.
  void addComputer(const FinalEvent& event);
  void setComputerDraft(const QString& text, Instant now);
  /// Whether the computer has an unfinished text, which may go back to this time.
  bool isUnfinishedSince(Instant time) const {
    return computerDraftStart_ && *computerDraftStart_ <= time;
  }

  /// The user's own words of a finished text; empty if there are none.
  QString withoutEcho(const FinalEvent& event, Instant now);
  /// The same for an unfinished text; an empty one ends it.
  QString draftWithoutEcho(const QString& text, Instant now);

 private:
  struct Word {
    /// Small letters and digits.
    QString key;
    Instant time;
    /// Where it is in its text.
    qsizetype begin = 0;
    qsizetype end = 0;
  };

  static std::vector<Word> wordsOf(const QString& text, const FinalEvent::Spoken& spoken);
  static bool isSame(const Word& a, const Word& b);
  static bool isAtOnce(const Word& a, const Word& b);
  std::vector<Word> playedAround(const std::vector<Word>& words) const;
  /// Which words belong to the longest common sequence with the computer's words of about that
  /// time; with `atOnce` each of them has to be said at the same time, too.
  std::vector<bool> matches(const std::vector<Word>& words, bool atOnce) const;
  /// Whether the computer spoke from the beginning to the end of that time.
  bool isPlayedThroughout(const FinalEvent::Spoken& spoken) const;
  QString filtered(const QString& text, const FinalEvent::Spoken& spoken, Instant now);

  std::deque<Word> played_;
  std::deque<FinalEvent::Spoken> texts_;  ///< of the computer
  std::vector<Word> draft_;
  std::optional<Instant> computerDraftStart_;
  std::optional<Instant> draftStart_;
  std::optional<Instant> lastEcho_;
};

}  // namespace velun
