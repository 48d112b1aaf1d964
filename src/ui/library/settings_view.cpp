// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/settings_view.h"

#include "language/localization.h"
#include "ui/common/symbol.h"
#include "ui/library/device_chooser.h"
#include "ui/library/language_chooser.h"
#include "ui/library/login_start_toggle.h"
#include "ui/library/settings_form.h"
#include "ui/library/sharing_section.h"
#include "ui/library/shortcuts_editor.h"
#include "ui/library/user_words_editor.h"

#include <array>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace velun {

namespace {

constexpr std::array kFontSizes = {9, 11, 13, 16, 20, 24, 30};

QString pointsLabel(double points) {
  return QString::number(points) + QStringLiteral("pt");
}

void setChecked(QCheckBox* box, bool checked) {
  const QSignalBlocker blocker(box);
  box->setChecked(checked);
}

/// Makes the note below a check box its accessible description.
void explain(QCheckBox* box, QLabel* note, const QString& text) {
  note->setText(text);
  box->setAccessibleDescription(text);
}

void setNote(QLabel* label, const QString& text) {
  label->setText(text);
  label->setVisible(!text.isEmpty());
}

}  // namespace

SettingsView::SettingsView(CaptionViewModel& model, std::function<void()> openRecordsFolder,
                           const SettingsNotes* notes, const DesktopSettings& desktop,
                           QWidget* parent)
    : QScrollArea(parent), model_(model), settings_(model.settings()), notes_(notes) {
  auto* content = new QWidget(this);
  auto* form = new QVBoxLayout(content);
  form->setContentsMargins(22, 16, 22, 18);
  form->setSpacing(7);
  addLanguageSection(form, desktop.login);
  addCaptionsSection(form, desktop.audio);
  addTranslationSection(form);
  addSavingSection(form);
  if (desktop.sharing) {
    form->addSpacing(10);
    form->addWidget(new SharingSection(*desktop.sharing, desktop.captionFile, systemFilePanels()));
  }
  if (desktop.shortcuts) {
    form->addSpacing(10);
    form->addWidget(new ShortcutsEditor(*desktop.shortcuts));
  }
  form->addStretch();
  setFrameShape(QFrame::NoFrame);
  setWidgetResizable(true);
  // Scrolls to the focused control.
  setFocusPolicy(Qt::NoFocus);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setWidget(content);
  connect(openFolder_, &QPushButton::clicked, this, std::move(openRecordsFolder));
  followSettings();
  present();
}

void SettingsView::addLanguageSection(QVBoxLayout* form, LoginStart* login) {
  languageHeading_ = addHeading(form);
  language_ = addChooser(form, nullptr);
  languageHeading_->setBuddy(language_);
  form->addWidget(new LoginStartToggle(login));
  for (const AppLanguage language : allAppLanguages) language_->addItem(title(language));
  connect(language_, &QComboBox::activated, this, [this](int index) {
    settings_.setLanguage(allAppLanguages[static_cast<std::size_t>(index)]);
  });
}

void SettingsView::addCaptionsSection(QVBoxLayout* form, AudioPlatform* audio) {
  captionsHeading_ = addHeading(form);
  input_ = addChooser(form, &inputLabel_);
  if (audio) {
    device_ = new DeviceChooser(settings_, *audio);
    addChooser(form, device_, &deviceLabel_);
  }
  locale_ = new LanguageChooser([this] { return model_.localeChoices(); });
  addChooser(form, locale_, &localeLabel_);
  downloadNote_ = addNote(form);
  fontSize_ = addChooser(form, &fontSizeLabel_);
  keepOnTop_ = addToggle(form);
  clickThrough_ = addToggle(form);
  clickThroughNote_ = addNote(form);
  hideFromSharing_ = addToggle(form);
  hideFromSharingNote_ = addNote(form);
  hideFromSharingHere_ = addNote(form);
  numbers_ = addToggle(form);
  numbersNote_ = addNote(form);
  form->addWidget(new UserWordsEditor(settings_, notes_));
  connect(input_, &QComboBox::activated, this, [this](int index) {
    settings_.setUseMic(allAudioInputs[static_cast<std::size_t>(index)] == AudioInput::microphone);
  });
  connect(locale_, &QComboBox::activated, this,
          [this](int index) { settings_.setLocaleID(locale_->itemData(index).toString()); });
  connect(fontSize_, &QComboBox::activated, this,
          [this](int index) { settings_.setFontSize(fontSize_->itemData(index).toDouble()); });
  connect(numbers_, &QCheckBox::toggled, &settings_, &AppSettings::setNumbersAsDigits);
  connect(keepOnTop_, &QCheckBox::toggled, &settings_, &AppSettings::setKeepOnTop);
  connect(clickThrough_, &QCheckBox::toggled, &settings_, &AppSettings::setClickThrough);
  connect(hideFromSharing_, &QCheckBox::toggled, &settings_,
          &AppSettings::setHideFromScreenSharing);
}

void SettingsView::addTranslationSection(QVBoxLayout* form) {
  translationHeading_ = addHeading(form);
  translate_ = addToggle(form);
  target_ = new LanguageChooser([this] { return model_.languageChoices(); });
  addChooser(form, target_, &targetLabel_);
  translationOnly_ = addToggle(form);
  connect(translate_, &QCheckBox::toggled, &settings_, &AppSettings::setTranslate);
  connect(target_, &QComboBox::activated, this,
          [this](int index) { settings_.setTargetID(target_->itemData(index).toString()); });
  connect(translationOnly_, &QCheckBox::toggled, &settings_, &AppSettings::setShowTranslationOnly);
}

void SettingsView::addSavingSection(QVBoxLayout* form) {
  savingHeading_ = addHeading(form);
  autoSave_ = addToggle(form);
  autoSaveNote_ = addNote(form);
  ask_ = addToggle(form);
  askNote_ = addNote(form);
  openFolder_ = new QPushButton(this);
  openFolder_->setIcon(symbolIcon(QStringLiteral("folder")));
  openFolder_->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
  form->addWidget(openFolder_);
  connect(autoSave_, &QCheckBox::toggled, &settings_, &AppSettings::setAutoSaveSessions);
  connect(ask_, &QCheckBox::toggled, &settings_, &AppSettings::setAskBeforeDiscarding);
}

void SettingsView::followSettings() {
  const auto follow = [this](auto signal) {
    connect(&settings_, signal, this, &SettingsView::present);
  };
  follow(&AppSettings::useMicChanged);
  follow(&AppSettings::localeIDChanged);
  follow(&AppSettings::targetIDChanged);
  follow(&AppSettings::fontSizeChanged);
  follow(&AppSettings::translateChanged);
  follow(&AppSettings::showTranslationOnlyChanged);
  follow(&AppSettings::autoSaveSessionsChanged);
  follow(&AppSettings::askBeforeDiscardingChanged);
  follow(&AppSettings::keepOnTopChanged);
  follow(&AppSettings::clickThroughChanged);
  follow(&AppSettings::hideFromScreenSharingChanged);
  follow(&AppSettings::numbersAsDigitsChanged);
  connect(&model_, &CaptionViewModel::localesChanged, this, &SettingsView::presentChoices);
  connect(&model_, &CaptionViewModel::languagesChanged, this, &SettingsView::presentChoices);
  connect(&Localization::shared(), &Localization::languageChanged, this, &SettingsView::present);
  if (notes_) connect(notes_, &SettingsNotes::changed, this, &SettingsView::presentNotes);
}

QSize SettingsView::minimumSizeHint() const {
  const int width = widget()->minimumSizeHint().width() + verticalScrollBar()->sizeHint().width();
  return {width, QScrollArea::minimumSizeHint().height()};
}

void SettingsView::present() {
  presentTexts();
  presentToggles();
  presentChoices();
  presentNotes();
}

void SettingsView::presentTexts() {
  languageHeading_->setText(QStringLiteral("Language · 언어"));
  nameControl(language_, languageHeading_->text());
  captionsHeading_->setText(L("Captions", "자막"));
  labelChooser(inputLabel_, input_, L("Input Source", "입력 소스"));
  if (device_) labelChooser(deviceLabel_, device_, L("Device", "장치"));
  labelChooser(localeLabel_, locale_, L("Recognition Language", "인식 언어"));
  labelChooser(fontSizeLabel_, fontSize_, L("Font Size", "글자 크기"));
  labelToggle(numbers_, L("Numbers as digits", "숫자를 아라비아 숫자로 표시"));
  explain(numbers_, numbersNote_,
          L("English captions say “12%” instead of “twelve percent”.",
            "영어 자막에 “twelve percent” 대신 “12%”로 표시합니다."));
  labelToggle(keepOnTop_, L("Keep caption window on top", "자막 창을 항상 위에 표시"));
  labelToggle(clickThrough_,
              L("Let clicks through the caption window", "클릭이 자막 창을 통과하게 하기"));
  explain(
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
  translationHeading_->setText(L("Translation", "번역"));
  labelToggle(translate_, L("Live Translation", "실시간 번역"));
  labelChooser(targetLabel_, target_, L("Translation Language", "번역 언어"));
  labelToggle(translationOnly_, L("Show Translation Only", "번역만 보기"));
  savingHeading_->setText(L("Saving Sessions", "세션 저장"));
  labelToggle(autoSave_, L("Save new sessions automatically", "새 세션을 자동으로 저장"));
  explain(
      autoSave_, autoSaveNote_,
      L("Sessions are saved only when you click Save Session; later captions are then saved too. "
        "Auto-save applies from the next new session.",
        "기본은 직접 저장입니다. ‘세션 저장’을 누르면 현재 세션의 이후 자막과 번역도 함께 "
        "저장합니다. "
        "자동 저장 설정은 다음 새 세션부터 적용됩니다."));
  labelToggle(ask_, L("Ask to save before a new session or quitting",
                      "새 세션·앱 종료 전에 저장 여부 묻기"));
  explain(
      ask_, askNote_,
      L("Unsaved captions are kept in memory only and are lost when the app quits. Audio is never "
        "saved.",
        "저장하지 않은 자막은 메모리에만 보관되며 앱이 종료되면 사라집니다. 오디오 파일은 저장하지 "
        "않습니다."));
  openFolder_->setText(L("Open Sessions Folder", "기록 폴더 열기"));
  openFolder_->setToolTip(openFolder_->text());
  updateGeometry();
}

void SettingsView::presentToggles() {
  setChecked(numbers_, settings_.numbersAsDigits());
  setChecked(keepOnTop_, settings_.keepOnTop());
  setChecked(clickThrough_, settings_.clickThrough());
  setChecked(hideFromSharing_, settings_.hideFromScreenSharing());
  setChecked(translate_, settings_.translate());
  setChecked(translationOnly_, settings_.showTranslationOnly());
  setChecked(autoSave_, settings_.autoSaveSessions());
  setChecked(ask_, settings_.askBeforeDiscarding());
}

void SettingsView::presentChoices() {
  language_->setCurrentIndex(static_cast<int>(settings_.language()));
  std::vector<Choice> inputs;
  inputs.reserve(allAudioInputs.size());
  for (const AudioInput input : allAudioInputs) inputs.push_back({title(input), rawValue(input)});
  const AudioInput input = settings_.useMic() ? AudioInput::microphone : AudioInput::computer;
  fillChooser(input_, inputs, {title(input), rawValue(input)});

  std::vector<Choice> sizes;
  sizes.reserve(kFontSizes.size());
  for (const int size : kFontSizes) sizes.push_back({pointsLabel(size), double(size)});
  fillChooser(fontSize_, sizes, {pointsLabel(settings_.fontSize()), settings_.fontSize()});

  locale_->setCurrent(settings_.localeID());
  target_->setCurrent(settings_.targetID());
}

void SettingsView::presentNotes() {
  const QString here = notes_ ? notes_->captureHiding() : QString();
  const bool isPromised = !notes_ || notes_->hidesFromOthers();
  hideFromSharingNote_->setVisible(isPromised);
  setNote(hideFromSharingHere_, here);
  hideFromSharing_->setAccessibleDescription(isPromised ? hideFromSharingNote_->text() : here);
  setNote(downloadNote_, notes_ ? notes_->download() : QString());
}

}  // namespace velun
