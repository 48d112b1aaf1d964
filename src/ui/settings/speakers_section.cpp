// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/speakers_section.h"

#include "language/localization.h"
#include "settings/app_settings.h"
#include "ui/settings/settings_form.h"
#include "ui/settings/settings_notes.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace velun {

SpeakersSection::SpeakersSection(AppSettings& settings, const SettingsNotes* notes, QWidget* parent)
    : QWidget(parent), settings_(settings), notes_(notes), install_(new QPushButton) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  toggle_ = addToggle(column);
  note_ = addNote(column);
  auto* row = new QHBoxLayout;
  install_->setAutoDefault(false);
  row->addSpacing(note_->contentsMargins().left());
  row->addWidget(install_);
  row->addStretch(1);
  column->addLayout(row);
  connect(toggle_, &QCheckBox::toggled, &settings_, &AppSettings::setLabelsSpeakers);
  connect(install_, &QPushButton::clicked, this, &SpeakersSection::modelsRequested);
  connect(&settings_, &AppSettings::labelsSpeakersChanged, this, &SpeakersSection::present);
  connect(&Localization::shared(), &Localization::languageChanged, this, &SpeakersSection::present);
  if (notes_) connect(notes_, &SettingsNotes::changed, this, &SpeakersSection::present);
  present();
}

void SpeakersSection::present() {
  const bool hasModel = notes_ && notes_->hasSpeakerModel();
  labelToggle(toggle_, L("Show who speaks", "누가 말하는지 표시"));
  checkToggle(toggle_, settings_.labelsSpeakers());
  // It can still be turned off after the model was removed.
  toggle_->setEnabled(hasModel || settings_.labelsSpeakers());
  explainToggle(
      toggle_, note_,
      hasModel
          ? L("Numbers the speakers by their voices, in sentences of a second and a half or more. "
              "This is an estimate and can be wrong. Click a number to give it a name.",
              "1.5초 이상의 문장에 목소리에 따라 화자 번호를 붙입니다. 추정이므로 틀릴 수 "
              "있습니다. "
              "번호를 클릭하면 이름을 지정할 수 있습니다.")
          : L("This needs a speaker model, which is not installed.",
              "화자 모델이 필요하지만 설치되어 있지 않습니다."));
  nameControl(install_, L("Install a Speaker Model…", "화자 모델 설치…"));
  install_->setText(L("Install a Speaker Model…", "화자 모델 설치…"));
  install_->setVisible(!hasModel);
}

}  // namespace velun
