// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/menubar/app_command.h"

#include <functional>
#include <QKeySequence>
#include <QString>
#include <vector>

class QMenu;

namespace velun {

/// One item of a menu as a value. Without a command it is a separator.
struct MenuItem {
  /// The place for a check mark.
  enum class Mark { none, check, radio };

  std::optional<AppCommand> command;
  QString title;
  Mark mark = Mark::none;
  bool isChecked = false;
  bool isEnabled = true;
  QKeySequence key = {};

  bool operator==(const MenuItem&) const = default;
};

/// Empties `menu` and fills it with `items`; a chosen item is handed to `perform`.
void fillMenu(QMenu& menu, const std::vector<MenuItem>& items,
              const std::function<void(AppCommand)>& perform);

}  // namespace velun
