// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/settings_pages.h"

#include "language/localization.h"
#include "ui/library/appearance_view.h"
#include "ui/models/models_page.h"

#include <QApplication>
#include <QScrollArea>
#include <QTabBar>

namespace velun {

SettingsPages::SettingsPages(QWidget* general, QWidget* appearance, QWidget* models)
    : models_(models) {
  setDocumentMode(true);
  // The tabs take the focus themselves.
  setFocusProxy(nullptr);
  setFocusPolicy(Qt::NoFocus);
  tabBar()->setFocusPolicy(Qt::TabFocus);
  tabBar()->setExpanding(true);
  addTab(general, QString());
  addTab(appearance, QString());
  if (models) addTab(models, QString());
  setTabBarAutoHide(true);
  // A scroll area does so only for controls that get the focus from another one inside it.
  connect(qApp, &QApplication::focusChanged, this,
          [this](const QWidget*, QWidget* control) { showFocused(control); });
  connect(&Localization::shared(), &Localization::languageChanged, this, &SettingsPages::translate);
  translate();
}

void SettingsPages::showModels() {
  if (models_) setCurrentWidget(models_);
}

void SettingsPages::showEvent(QShowEvent* event) {
  QTabWidget::showEvent(event);
  const QWidget* page = currentWidget();
  if (!page || window()->focusWidget()) return;
  for (QWidget* each = page->nextInFocusChain(); each != page; each = each->nextInFocusChain()) {
    const bool takesFocus = (each->focusPolicy() & Qt::TabFocus) && each->isEnabled();
    if (takesFocus && page->isAncestorOf(each)) return each->setFocus(Qt::OtherFocusReason);
  }
}

void SettingsPages::showFocused(QWidget* control) {
  if (!control || !isAncestorOf(control)) return;
  for (QWidget* each = control->parentWidget(); each != this; each = each->parentWidget()) {
    if (auto* area = qobject_cast<QScrollArea*>(each)) area->ensureWidgetVisible(control);
  }
}

void SettingsPages::translate() {
  setTabText(0, L("General", "일반"));
  // An ampersand in a tab's text begins a shortcut.
  setTabText(1, AppearanceView::title());
  if (count() > 2) setTabText(2, ModelsPage::title().replace('&', "&&"));
}

}  // namespace velun
