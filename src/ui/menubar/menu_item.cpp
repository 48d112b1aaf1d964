// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/menu_item.h"

#include <QActionGroup>
#include <QMenu>

namespace velun {

void fillMenu(QMenu& menu, const std::vector<MenuItem>& items,
              const std::function<void(AppCommand)>& perform) {
  // Later, because the menu may be filled anew from inside one of its own actions.
  for (QAction* action : menu.actions()) {
    menu.removeAction(action);
    action->deleteLater();
  }
  QActionGroup* radios = nullptr;
  for (const MenuItem& item : items) {
    if (!item.command) {
      menu.addSeparator();
      radios = nullptr;
      continue;
    }
    QAction* action = menu.addAction(item.title);
    action->setCheckable(item.mark != MenuItem::Mark::none);
    if (item.mark == MenuItem::Mark::radio) {
      if (!radios) radios = new QActionGroup(action);
      action->setActionGroup(radios);
    }
    action->setChecked(item.isChecked);
    action->setEnabled(item.isEnabled);
    action->setShortcut(item.key);
    action->setMenuRole(QAction::NoRole);
    QObject::connect(action, &QAction::triggered, &menu,
                     [perform, command = *item.command] { perform(command); });
  }
}

}  // namespace velun
