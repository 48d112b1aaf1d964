// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// A part of the program that others made, or a model that the user may have downloaded.
struct Credit {
  QString name;
  /// As its makers state it.
  QString licence;

  bool operator==(const Credit&) const = default;
};

}  // namespace velun
