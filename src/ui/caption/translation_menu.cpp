// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/translation_menu.h"

#include "captions/caption_view_model.h"
#include "language/localization.h"
#include "ui/caption/caption_menu.h"

#include <QActionGroup>

namespace velun {

namespace {

void addToggle(CaptionMenu& menu, const QString& label, bool on, AppSettings& settings,
               void (AppSettings::*set)(bool)) {
  QAction* action = menu.addAction(label);
  action->setCheckable(true);
  action->setChecked(on);
  QObject::connect(action, &QAction::triggered, &settings, set);
}

void addLanguages(CaptionMenu& menu, const QString& label, const QStringList& identifiers,
                  const QString& chosen, AppSettings& settings,
                  void (AppSettings::*set)(const QString&)) {
  CaptionMenu* list = menu.addCaptionMenu(label);
  list->setEnabled(!identifiers.isEmpty());
  auto* choice = new QActionGroup(list);
  for (const QString& identifier : identifiers) {
    QAction* action = list->addAction(languageName(identifier));
    action->setCheckable(true);
    action->setChecked(identifier == chosen);
    choice->addAction(action);
    QObject::connect(action, &QAction::triggered, &settings,
                     [&settings, set, identifier] { (settings.*set)(identifier); });
  }
}

}  // namespace

void fillTranslationMenu(CaptionMenu& menu, const CaptionViewModel& model) {
  AppSettings& settings = model.settings();
  menu.clear();
  addToggle(menu, L("Turn On Translation", "번역 켜기"), settings.translate(), settings,
            &AppSettings::setTranslate);
  menu.addSeparator();
  addLanguages(menu, L("Input Language", "입력 언어"), model.locales(), settings.localeID(),
               settings, &AppSettings::setLocaleID);
  addLanguages(menu, L("Translation Language", "번역 언어"), model.languages(), settings.targetID(),
               settings, &AppSettings::setTargetID);
  menu.addSeparator();
  addToggle(menu, L("Show Translation Only", "번역만 보기"), settings.showTranslationOnly(),
            settings, &AppSettings::setShowTranslationOnly);
}

}  // namespace velun
