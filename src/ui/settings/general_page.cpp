// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/general_page.h"

#include "language/localization.h"
#include "ui/settings/login_start_toggle.h"
#include "ui/settings/settings_form.h"
#include "ui/settings/shortcuts_editor.h"

#include <QComboBox>
#include <QLabel>
#include <QVBoxLayout>

namespace velun {

GeneralPage::GeneralPage(AppSettings& settings, const DesktopSettings& desktop, QWidget* parent)
    : SettingsPage(parent), settings_(settings) {
  languageHeading_ = addHeading(&form());
  language_ = addChooser(&form(), nullptr);
  languageHeading_->setBuddy(language_);
  for (const AppLanguage language : allAppLanguages) language_->addItem(velun::title(language));
  form().addWidget(new LoginStartToggle(desktop.login));
  if (desktop.shortcuts) {
    form().addSpacing(10);
    form().addWidget(new ShortcutsEditor(*desktop.shortcuts));
  }
  connect(language_, &QComboBox::activated, this, [this](int index) {
    settings_.setLanguage(allAppLanguages[static_cast<std::size_t>(index)]);
  });
  connect(&Localization::shared(), &Localization::languageChanged, this, &GeneralPage::present);
  present();
}

QString GeneralPage::title() {
  return L("General", "일반");
}

void GeneralPage::present() {
  // The same in every interface language, so that it can be found in the wrong one.
  labelChooser(languageHeading_, language_, QStringLiteral("Language · 언어"));
  language_->setCurrentIndex(static_cast<int>(settings_.language()));
}

}  // namespace velun
