// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// Whose sound of the computer's is captioned.
struct ProgramChoice {
  enum class Scope { all, only, allBut };

  Scope scope = Scope::all;
  /// The program's name, as in `AudioTarget::id`; empty with `all`.
  QString name;

  bool operator==(const ProgramChoice&) const = default;
};

/// Such as "Only Firefox", localized.
QString title(const ProgramChoice& choice);

}  // namespace velun
