// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <string>

namespace velun {

/// What is wrong with a session file, or a transcript of an earlier version, and where. Thrown on
/// any thread; only `describe` needs the main thread.
struct SessionProblem {
  enum class Kind {
    tooLarge,
    empty,
    notUtf8,
    notJson,
    endsEarly,
    badCharacter,
    tooDeep,
    tooManyLines,
    tooManyLanguages,
    notAnObject,
    notAList,
    notAText,
    notAnInteger,
    notADuration,
    notAnId,
    notATime,
    notAnInput,
    missing,
    newerVersion,
    /// Of transcripts of an earlier version.
    transcriptNotUtf8,
    notATranscript,
  };

  Kind kind;
  /// The line of the file, counted from 1; 0 if the problem is the file as a whole.
  std::size_t line = 0;
  /// The key whose value is wrong or missing, in UTF-8; empty for the session itself.
  std::string key = {};
};

/// The problem as a finished text in the interface language. Main thread only.
QString describe(const SessionProblem& problem, const QString& fileName);

}  // namespace velun
