// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/translation_page.h"

#include "language/localization.h"
#include "ui/settings/language_chooser.h"
#include "ui/settings/settings_form.h"

#include <QCheckBox>
#include <QLabel>
#include <QVBoxLayout>

namespace velun {

TranslationPage::TranslationPage(CaptionViewModel& model, QWidget* parent)
    : SettingsPage(parent), settings_(model.settings()) {
  heading_ = addHeading(&form());
  translate_ = addToggle(&form());
  target_ = new LanguageChooser([&model] { return model.languageChoices(); });
  addChooser(&form(), target_, &targetLabel_);
  translationOnly_ = addToggle(&form());
  connect(translate_, &QCheckBox::toggled, &settings_, &AppSettings::setTranslate);
  connect(target_, &QComboBox::activated, this,
          [this](int index) { settings_.setTargetID(target_->itemData(index).toString()); });
  connect(translationOnly_, &QCheckBox::toggled, &settings_, &AppSettings::setShowTranslationOnly);
  connect(&settings_, &AppSettings::translateChanged, this, &TranslationPage::presentToggles);
  connect(&settings_, &AppSettings::showTranslationOnlyChanged, this,
          &TranslationPage::presentToggles);
  connect(&settings_, &AppSettings::targetIDChanged, this, &TranslationPage::presentTarget);
  connect(&model, &CaptionViewModel::languagesChanged, this, &TranslationPage::presentTarget);
  connect(&Localization::shared(), &Localization::languageChanged, this, &TranslationPage::present);
  present();
}

QString TranslationPage::title() {
  return L("Translation", "번역");
}

void TranslationPage::present() {
  heading_->setText(title());
  labelToggle(translate_, L("Live Translation", "실시간 번역"));
  labelChooser(targetLabel_, target_, L("Translation Language", "번역 언어"));
  labelToggle(translationOnly_, L("Show Translation Only", "번역만 보기"));
  presentTarget();
  presentToggles();
  updateGeometry();
}

void TranslationPage::presentTarget() {
  target_->setCurrent(settings_.targetID());
}

void TranslationPage::presentToggles() {
  checkToggle(translate_, settings_.translate());
  checkToggle(translationOnly_, settings_.showTranslationOnly());
}

}  // namespace velun
