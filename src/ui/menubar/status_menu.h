// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/common/app_commands.h"

#include <QMenu>
#include <vector>

namespace velun {

/// The menu of the status icon. It follows the commands, except while it is open: an item must not
/// change under the pointer. Main thread.
class StatusMenu final : public QMenu {
  Q_OBJECT

 public:
  /// `model` and `commands` must outlive the menu.
  StatusMenu(const CaptionViewModel& model, AppCommands& commands);

 private:
  struct Item {
    QAction* item;
    AppCommand command;
  };

  void add(const std::vector<AppCommand>& section);
  void showCommands();
  /// Saving has nothing left to do here once the session is written.
  void showSaving(QAction& item) const;

  const CaptionViewModel& model_;
  AppCommands& commands_;
  std::vector<Item> items_;
};

}  // namespace velun
