// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace velun {

/// Third-party software in the program, or a model that it can download.
struct Credit {
  QString name;
  /// As stated by its authors.
  QString licence;

  bool operator==(const Credit&) const = default;
};

}  // namespace velun
