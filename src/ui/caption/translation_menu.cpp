// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/translation_menu.h"

#include "captions/caption_view_model.h"
#include "language/localization.h"
#include "ui/caption/caption_menu.h"

namespace velun {

namespace {

void addToggle(CaptionMenu& menu, const QString& label, bool on, AppSettings& settings,
               void (AppSettings::*set)(bool)) {
  QAction* action = menu.addAction(label);
  action->setCheckable(true);
  action->setChecked(on);
  QObject::connect(action, &QAction::triggered, &settings, set);
}

void addChooser(CaptionMenu& menu, const QString& label, const QString& chosen, bool isEmpty,
                const std::function<void()>& open) {
  // After a tab, the chosen language stands at the end of the row.
  QAction* action = menu.addAction(label + QStringLiteral("…\t") + languageName(chosen));
  action->setEnabled(!isEmpty);
  // Queued: the menu still has the keyboard while it closes.
  QObject::connect(action, &QAction::triggered, &menu, open, Qt::QueuedConnection);
}

}  // namespace

void fillTranslationMenu(CaptionMenu& menu, const CaptionViewModel& model,
                         const LanguageChoosers& choosers) {
  AppSettings& settings = model.settings();
  menu.clear();
  addToggle(menu, L("Turn On Translation", "번역 켜기"), settings.translate(), settings,
            &AppSettings::setTranslate);
  menu.addSeparator();
  addChooser(menu, L("Input Language", "입력 언어"), settings.localeID(), model.locales().isEmpty(),
             choosers.openInput);
  addChooser(menu, L("Translation Language", "번역 언어"), settings.targetID(),
             model.languages().isEmpty(), choosers.openTranslation);
  menu.addSeparator();
  addToggle(menu, L("Show Translation Only", "번역만 보기"), settings.showTranslationOnly(),
            settings, &AppSettings::setShowTranslationOnly);
}

}  // namespace velun
