// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariant>

namespace velun {

/// One command that other programs can carry out by its name.
struct ApplicationAction {
  QString name;
  /// The D-Bus type of its parameter, such as "s"; empty when it takes none.
  QString parameterType;
  bool isEnabled = true;
  /// What it stands at; invalid when it has no state.
  QVariant state;

  bool operator==(const ApplicationAction&) const = default;
};

}  // namespace velun
