// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/failure_buttons.h"

#include "captions/caption_view_model.h"
#include "language/localization.h"
#include "ui/caption/caption_button.h"
#include "ui/caption/transcript_layout.h"
#include "ui/common/app_commands.h"

#include <QApplication>
#include <QHBoxLayout>

namespace velun {

namespace {

constexpr int kGap = 8;
constexpr int kBottom = 12;

}  // namespace

FailureButtons::FailureButtons(CaptionViewModel& model, AppCommands& commands, QWidget* parent)
    : QWidget(parent),
      model_(model),
      commands_(commands),
      tryAgain_(new CaptionButton(this)),
      useDefaultDevice_(new CaptionButton(this)),
      openSoundSettings_(new CaptionButton(this)),
      chooseRecognizer_(new CaptionButton(this)) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(TranscriptLayout::horizontalInset, 0, TranscriptLayout::horizontalInset,
                          kBottom);
  row->setSpacing(kGap);
  row->addStretch(0);
  const auto add = [&](CaptionButton* button, AppCommand command) {
    row->addWidget(button);
    connect(button, &CaptionButton::clicked, &commands.action(command), &QAction::trigger);
  };
  add(tryAgain_, AppCommand::toggleCaptions);
  row->addWidget(useDefaultDevice_);
  connect(useDefaultDevice_, &CaptionButton::clicked, &model, &CaptionViewModel::useDefaultDevice);
  add(openSoundSettings_, AppCommand::openSoundSettings);
  add(chooseRecognizer_, AppCommand::showModels);
  row->addStretch(1);
  connect(&model, &CaptionViewModel::statusChanged, this, &FailureButtons::present);
  connect(&model, &CaptionViewModel::isRunningChanged, this, &FailureButtons::present);
  connect(&model, &CaptionViewModel::isDeviceMissingChanged, this, &FailureButtons::present);
  connect(&commands, &AppCommands::refreshed, this, &FailureButtons::present);
  connect(&Localization::shared(), &Localization::languageChanged, this, &FailureButtons::present);
  present();
}

void FailureButtons::setColors(const CaptionColors& colors) {
  for (CaptionButton* button :
       {tryAgain_, useDefaultDevice_, openSoundSettings_, chooseRecognizer_}) {
    button->setColors(colors);
  }
}

void FailureButtons::setCentered(bool isCentered) {
  static_cast<QHBoxLayout*>(layout())->setStretch(0, isCentered ? 1 : 0);
}

bool FailureButtons::hasFailure() const {
  return model_.failure() && !model_.isRunning();
}

bool FailureButtons::isWanted() const {
  return hasFailure() || model_.isDeviceMissing();
}

void FailureButtons::present() {
  const bool isMissing = model_.isDeviceMissing();
  const bool isSound = isMissing || model_.failure() == FailureStage::sound;
  const bool isRecognition = !isMissing && model_.failure() == FailureStage::recognition;
  const QAction& openSound = commands_.action(AppCommand::openSoundSettings);
  const QAction& choose = commands_.action(AppCommand::showModels);
  tryAgain_->setText(L("Try Again", "다시 시도"));
  tryAgain_->setEnabled(commands_.action(AppCommand::toggleCaptions).isEnabled());
  useDefaultDevice_->setText(L("Use the Default Device", "기본 장치 사용"));
  openSoundSettings_->setText(openSound.text());
  chooseRecognizer_->setText(choose.text());
  // Qt would move the focus of a hidden button into the header and show it.
  if (!isWanted() && isAncestorOf(QApplication::focusWidget())) parentWidget()->setFocus();
  tryAgain_->setVisible(hasFailure());
  useDefaultDevice_->setVisible(isMissing);
  openSoundSettings_->setVisible(isSound && openSound.isEnabled());
  chooseRecognizer_->setVisible(isRecognition);
  setVisible(isWanted());
  for (CaptionButton* button :
       {tryAgain_, useDefaultDevice_, openSoundSettings_, chooseRecognizer_}) {
    button->updateGeometry();
  }
  Q_EMIT changed();
}

}  // namespace velun
