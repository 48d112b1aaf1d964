// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/captions_page.h"

#include "language/localization.h"
#include "ui/settings/device_chooser.h"
#include "ui/settings/input_labels_editor.h"
#include "ui/settings/language_chooser.h"
#include "ui/settings/settings_form.h"
#include "ui/settings/speakers_section.h"
#include "ui/settings/user_words_editor.h"

#include <array>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QVBoxLayout>

namespace velun {

namespace {

constexpr std::array kFontSizes = {9, 11, 13, 16, 20, 24, 30};

QString pointsLabel(double points) {
  return QString::number(points) + QStringLiteral("pt");
}

}  // namespace

CaptionsPage::CaptionsPage(CaptionViewModel& model, const SettingsNotes* notes,
                           const DesktopSettings& desktop, QWidget* parent)
    : SettingsPage(parent), model_(model), settings_(model.settings()), notes_(notes) {
  addCaptions(desktop.audio);
  addWindow();
  followSettings();
  present();
}

QString CaptionsPage::title() {
  return L("Captions", "자막");
}

void CaptionsPage::addCaptions(AudioPlatform* audio) {
  captionsHeading_ = addHeading(&form());
  input_ = addChooser(&form(), &inputLabel_);
  if (audio) {
    device_ = new DeviceChooser(settings_, *audio);
    addChooser(&form(), device_, &deviceLabel_);
    microphone_ = new DeviceChooser(settings_, *audio);
    microphone_->setInput(AudioInput::microphone);
    addChooser(&form(), microphone_, &microphoneLabel_);
  }
  inputLabels_ = new InputLabelsEditor(settings_);
  form().addWidget(inputLabels_);
  locale_ = new LanguageChooser([this] { return model_.localeChoices(); });
  addChooser(&form(), locale_, &localeLabel_);
  downloadNote_ = addNote(&form());
  numbers_ = addToggle(&form());
  numbersNote_ = addNote(&form());
  form().addWidget(new UserWordsEditor(settings_, notes_));
  auto* speakers = new SpeakersSection(settings_, notes_);
  form().addWidget(speakers);
  connect(speakers, &SpeakersSection::modelsRequested, this, &CaptionsPage::modelsRequested);
  connect(input_, &QComboBox::activated, this, [this](int index) {
    settings_.setInputChoice(allInputChoices[static_cast<std::size_t>(index)]);
  });
  connect(locale_, &QComboBox::activated, this,
          [this](int index) { settings_.setLocaleID(locale_->itemData(index).toString()); });
  connect(numbers_, &QCheckBox::toggled, &settings_, &AppSettings::setNumbersAsDigits);
}

void CaptionsPage::addWindow() {
  windowHeading_ = addHeading(&form());
  fontSize_ = addChooser(&form(), &fontSizeLabel_);
  keepOnTop_ = addToggle(&form());
  clickThrough_ = addToggle(&form());
  clickThroughNote_ = addNote(&form());
  hideFromSharing_ = addToggle(&form());
  hideFromSharingNote_ = addNote(&form());
  hideFromSharingHere_ = addNote(&form());
  connect(fontSize_, &QComboBox::activated, this,
          [this](int index) { settings_.setFontSize(fontSize_->itemData(index).toDouble()); });
  connect(keepOnTop_, &QCheckBox::toggled, &settings_, &AppSettings::setKeepOnTop);
  connect(clickThrough_, &QCheckBox::toggled, &settings_, &AppSettings::setClickThrough);
  connect(hideFromSharing_, &QCheckBox::toggled, &settings_,
          &AppSettings::setHideFromScreenSharing);
}

void CaptionsPage::followSettings() {
  for (const auto signal : {&AppSettings::inputChoiceChanged, &AppSettings::localeIDChanged,
                            &AppSettings::fontSizeChanged}) {
    connect(&settings_, signal, this, &CaptionsPage::presentChoices);
  }
  for (const auto signal :
       {&AppSettings::keepOnTopChanged, &AppSettings::clickThroughChanged,
        &AppSettings::hideFromScreenSharingChanged, &AppSettings::numbersAsDigitsChanged}) {
    connect(&settings_, signal, this, &CaptionsPage::presentToggles);
  }
  connect(&model_, &CaptionViewModel::localesChanged, this, &CaptionsPage::presentChoices);
  connect(&Localization::shared(), &Localization::languageChanged, this, &CaptionsPage::present);
  if (notes_) connect(notes_, &SettingsNotes::changed, this, &CaptionsPage::presentNotes);
}

void CaptionsPage::present() {
  presentTexts();
  presentToggles();
  presentChoices();
  presentNotes();
}

void CaptionsPage::presentTexts() {
  captionsHeading_->setText(L("Captions", "자막"));
  labelChooser(inputLabel_, input_, L("Input Source", "입력 소스"));
  if (microphone_) labelChooser(microphoneLabel_, microphone_, L("Microphone", "마이크"));
  labelChooser(localeLabel_, locale_, L("Recognition Language", "인식 언어"));
  labelToggle(numbers_, L("Numbers as digits", "숫자를 아라비아 숫자로 표시"));
  explainToggle(numbers_, numbersNote_,
                L("English captions say “12%” instead of “twelve percent”.",
                  "영어 자막에 “twelve percent” 대신 “12%”로 표시합니다."));
  windowHeading_->setText(L("Caption Window", "자막 창"));
  labelChooser(fontSizeLabel_, fontSize_, L("Font Size", "글자 크기"));
  labelToggle(keepOnTop_, L("Keep caption window on top", "자막 창을 항상 위에 표시"));
  labelToggle(clickThrough_,
              L("Let clicks through the caption window", "클릭이 자막 창을 통과하게 하기"));
  explainToggle(
      clickThrough_, clickThroughNote_,
      L("They reach the window beneath. Starting Velun once more ends this, and so does the "
        "status icon’s menu.",
        "클릭이 아래에 있는 창에 전달됩니다. Velun을 한 번 더 실행하거나 상태 아이콘의 메뉴에서 "
        "해제할 수 있습니다."));
  labelToggle(hideFromSharing_, L("Hide caption window from screen sharing and recording",
                                  "화면 공유·녹화에서 자막 창 숨기기"));
  hideFromSharingNote_->setText(
      L("Keeps the caption window off other people’s screens when you share your screen in Zoom, "
        "Teams, and similar apps",
        "Zoom, Teams 등으로 화면을 공유할 때 상대방 화면에 자막 창이 보이지 않게 함"));
  updateGeometry();
}

void CaptionsPage::presentChoices() {
  std::vector<Choice> inputs;
  inputs.reserve(allInputChoices.size());
  for (const InputChoice choice : allInputChoices) {
    inputs.push_back({velun::title(choice), rawValue(choice)});
  }
  const InputChoice choice = settings_.inputChoice();
  fillChooser(input_, inputs, {velun::title(choice), rawValue(choice)});
  presentDevices();

  std::vector<Choice> sizes;
  sizes.reserve(kFontSizes.size());
  for (const int size : kFontSizes) sizes.push_back({pointsLabel(size), double(size)});
  fillChooser(fontSize_, sizes, {pointsLabel(settings_.fontSize()), settings_.fontSize()});

  locale_->setCurrent(settings_.localeID());
}

void CaptionsPage::presentDevices() {
  const bool isBoth = settings_.inputChoice() == InputChoice::both;
  inputLabels_->setVisible(isBoth);
  if (!device_) return;
  device_->setInput(settings_.useMic() ? AudioInput::microphone : AudioInput::computer);
  labelChooser(deviceLabel_, device_,
               isBoth ? L("Computer Audio", "컴퓨터 오디오") : L("Device", "장치"));
  microphone_->setVisible(isBoth);
  microphoneLabel_->setVisible(isBoth);
}

void CaptionsPage::presentToggles() {
  checkToggle(numbers_, settings_.numbersAsDigits());
  checkToggle(keepOnTop_, settings_.keepOnTop());
  checkToggle(clickThrough_, settings_.clickThrough());
  checkToggle(hideFromSharing_, settings_.hideFromScreenSharing());
}

void CaptionsPage::presentNotes() {
  const QString here = notes_ ? notes_->captureHiding() : QString();
  const bool isPromised = !notes_ || notes_->hidesFromOthers();
  hideFromSharingNote_->setVisible(isPromised);
  setNote(hideFromSharingHere_, here);
  hideFromSharing_->setAccessibleDescription(isPromised ? hideFromSharingNote_->text() : here);
  setNote(downloadNote_, notes_ ? notes_->download() : QString());
}

}  // namespace velun
