// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/settings_pages.h"

#include "language/localization.h"
#include "ui/models/models_page.h"

#include <QTabBar>

namespace velun {

SettingsPages::SettingsPages(QWidget* general, QWidget* models) {
  setDocumentMode(true);
  tabBar()->setExpanding(true);
  addTab(general, QString());
  if (models) addTab(models, QString());
  setTabBarAutoHide(true);
  connect(&Localization::shared(), &Localization::languageChanged, this, &SettingsPages::translate);
  translate();
}

void SettingsPages::translate() {
  setTabText(0, L("General", "일반"));
  // An ampersand in a tab's text begins a shortcut.
  if (count() > 1) setTabText(1, ModelsPage::title().replace('&', "&&"));
}

}  // namespace velun
