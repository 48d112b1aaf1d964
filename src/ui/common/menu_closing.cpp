// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/menu_closing.h"

#include <QApplication>
#include <QMenu>

namespace velun {

void closeWhenChosen(const QMenu& menu) {
  QObject::connect(&menu, &QMenu::triggered, &menu, [] {
    while (auto* open = qobject_cast<QMenu*>(QApplication::activePopupWidget())) open->hide();
  });
}

}  // namespace velun
