// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <string>

namespace velun {

/// What is wrong with a session file, found where; worded only when it is shown, so that files can
/// be read on any thread.
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
    notAnObject,
    notAList,
    notAText,
    notAnInteger,
    notAnId,
    notATime,
    notAnInput,
    missing,
    newerVersion,
  };

  Kind kind;
  /// The line of the file, counted from 1; 0 when the whole file is meant.
  std::size_t line = 0;
  /// The key whose value is wrong or missing; empty for the session itself.
  std::string key = {};
};

/// The problem as a finished text in the interface language.
QString describe(const SessionProblem& problem, const QString& fileName);

}  // namespace velun
