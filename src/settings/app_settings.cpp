// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/app_settings.h"

#include "language/localization.h"
#include "platform/foundation/preference_store.h"
#include "settings/user_words.h"

#include <algorithm>

namespace velun {

namespace {

/// The key of the changes to a set's style.
QString styleKey(PanelSet set) {
  return QStringLiteral("panelStyle.") + rawValue(set);
}

}  // namespace

AppSettings::AppSettings(PreferenceStore* preferences) : preferences_(preferences) {
  if (preferences_) {
    const auto boolean = [this](const char* key, bool missing) {
      return preferences_->get<bool>(QString::fromLatin1(key)).value_or(missing);
    };
    const auto text = [this](const char* key, const QString& missing) {
      return preferences_->get<QString>(QString::fromLatin1(key)).value_or(missing);
    };
    language_ = appLanguageFromRawValue(text("language", QString())).value_or(AppLanguage::english);
    useMic_ = boolean("useMic", useMic_);
    captionsBoth_ = boolean("captionsBoth", captionsBoth_);
    output_ = readDevice("output");
    microphone_ = readDevice("microphone");
    program_ = readProgram();
    localeID_ = text("localeID", localeID_);
    targetID_ = text("targetID", targetID_);
    fontSize_ = preferences_->get<double>(QStringLiteral("fontSize")).value_or(fontSize_);
    translate_ = boolean("translate", translate_);
    showTranslationOnly_ = boolean("showTranslationOnly", showTranslationOnly_);
    autoSaveSessions_ = boolean("autoSaveSessions", autoSaveSessions_);
    askBeforeDiscarding_ = boolean("askBeforeDiscarding", askBeforeDiscarding_);
    keepOnTop_ = boolean("keepOnTop", keepOnTop_);
    clickThrough_ = boolean("clickThrough", clickThrough_);
    hideFromScreenSharing_ = boolean("hideFromScreenSharing", hideFromScreenSharing_);
    numbersAsDigits_ = boolean("numbersAsDigits", numbersAsDigits_);
    labelsSpeakers_ = boolean("labelsSpeakers", labelsSpeakers_);
    userWords_ = normalizedUserWords(text("userWords", userWords_));
    followsHighContrast_ = boolean("followsHighContrast", followsHighContrast_);
    const double lines = preferences_->get<double>(QStringLiteral("captionLines")).value_or(0);
    captionLines_ = static_cast<int>(std::clamp(lines, 0.0, double(maxCaptionLines)));
  }
  readInputLabels();
  readStyles();
  Localization::shared().setLanguage(language_);
}

void AppSettings::readStyles() {
  for (const PanelSet set : allPanelSets) {
    PanelStyle& style = styles_[static_cast<std::size_t>(set)];
    style = standardStyle(set);
    const auto changes = preferences_ ? preferences_->get<QString>(styleKey(set)) : std::nullopt;
    if (changes) style = decodeStyle(*changes, style);
  }
  const auto set = preferences_ ? preferences_->get<QString>(QStringLiteral("panelSet"))
                                : std::optional<QString>();
  if (set) panelSet_ = panelSetFromRawValue(*set).value_or(panelSet_);
}

template <class Value>
bool AppSettings::set(Value& property, const Value& value, const char* key,
                      void (AppSettings::*notify)()) {
  const bool differs = property != value;
  property = value;
  if (preferences_) preferences_->set(QString::fromLatin1(key), value);
  Q_EMIT(this->*notify)();
  return differs;
}

void AppSettings::setLanguage(AppLanguage language) {
  language_ = language;
  if (preferences_) preferences_->set(QStringLiteral("language"), rawValue(language));
  Localization::shared().setLanguage(language);
  Q_EMIT languageChanged();
}

bool AppSettings::captions(AudioInput input) const {
  return captionsBoth_ || useMic_ == (input == AudioInput::microphone);
}

void AppSettings::setUseMic(bool useMic) {
  setInputChoice(useMic ? InputChoice::microphone : InputChoice::computer);
}

void AppSettings::setInputChoice(InputChoice choice) {
  const bool differs = inputChoice() != choice;
  const bool both = choice == InputChoice::both;
  const auto write = [this](const char* key, bool value) {
    if (preferences_) preferences_->set(QString::fromLatin1(key), value);
  };
  // Versions that know one input only go on with the one that was chosen last.
  if (!both) {
    useMic_ = choice == InputChoice::microphone;
    write("useMic", useMic_);
  }
  if (captionsBoth_ || both) write("captionsBoth", both);
  captionsBoth_ = both;
  Q_EMIT inputChoiceChanged();
  if (differs) Q_EMIT changed(Change::input);
}

void AppSettings::readInputLabels() {
  for (const AudioInput input : allAudioInputs) {
    InputLabel& label = inputLabels_[static_cast<std::size_t>(input)];
    label.color = defaultInputColor(input);
    if (!preferences_) continue;
    const QString key = rawValue(input);
    label.name = preferences_->get<QString>(key + QStringLiteral("LabelName")).value_or(QString());
    const QColor color(
        preferences_->get<QString>(key + QStringLiteral("LabelColor")).value_or(QString()));
    if (color.isValid()) label.color = color.rgb();
  }
}

QString AppSettings::inputName(AudioInput input) const {
  const QString& name = inputLabel(input).name;
  return name.isEmpty() ? defaultInputName(input) : name;
}

void AppSettings::setInputLabel(AudioInput input, const InputLabel& label) {
  InputLabel& own = inputLabels_[static_cast<std::size_t>(input)];
  own = {label.name.simplified(), label.color};
  if (preferences_) {
    preferences_->set(rawValue(input) + QStringLiteral("LabelName"), own.name);
    preferences_->set(rawValue(input) + QStringLiteral("LabelColor"), own.color.name());
  }
  Q_EMIT inputLabelsChanged();
}

DeviceChoice AppSettings::readDevice(const char* key) const {
  const QString name = QString::fromLatin1(key);
  return {preferences_->get<QString>(name).value_or(QString()),
          preferences_->get<QString>(name + QStringLiteral("Name")).value_or(QString())};
}

bool AppSettings::storeDevice(DeviceChoice& property, const DeviceChoice& device, const char* key,
                              void (AppSettings::*notify)()) {
  const bool differs = property.id != device.id;
  property = device;
  if (preferences_) {
    const QString name = QString::fromLatin1(key);
    preferences_->set(name, device.id);
    preferences_->set(name + QStringLiteral("Name"), device.name);
  }
  Q_EMIT(this->*notify)();
  return differs;
}

void AppSettings::setOutput(const DeviceChoice& output) {
  const bool differs = storeDevice(output_, output, "output", &AppSettings::outputChanged);
  if (differs && captions(AudioInput::computer)) Q_EMIT changed(Change::input);
}

void AppSettings::setMicrophone(const DeviceChoice& microphone) {
  const bool differs =
      storeDevice(microphone_, microphone, "microphone", &AppSettings::microphoneChanged);
  if (differs && captions(AudioInput::microphone)) Q_EMIT changed(Change::input);
}

void AppSettings::setDevice(AudioInput input, const DeviceChoice& device) {
  input == AudioInput::microphone ? setMicrophone(device) : setOutput(device);
}

void AppSettings::setDevice(const DeviceChoice& device) {
  useMic() ? setMicrophone(device) : setOutput(device);
}

ProgramChoice AppSettings::readProgram() const {
  const QString name = preferences_->get<QString>(QStringLiteral("program")).value_or(QString());
  if (name.isEmpty()) return {};
  const bool isExcluded =
      preferences_->get<bool>(QStringLiteral("programExcluded")).value_or(false);
  return {isExcluded ? ProgramChoice::Scope::allBut : ProgramChoice::Scope::only, name};
}

void AppSettings::setProgram(const ProgramChoice& program) {
  const ProgramChoice valid = program.name.isEmpty() || program.scope == ProgramChoice::Scope::all
                                  ? ProgramChoice()
                                  : program;
  const bool differs = program_ != valid;
  program_ = valid;
  if (preferences_) {
    preferences_->set(QStringLiteral("program"), valid.name);
    preferences_->set(QStringLiteral("programExcluded"),
                      valid.scope == ProgramChoice::Scope::allBut);
  }
  Q_EMIT programChanged();
  if (differs && captions(AudioInput::computer)) Q_EMIT changed(Change::input);
}

void AppSettings::setLocaleID(const QString& localeID) {
  const bool differs = set(localeID_, localeID, "localeID", &AppSettings::localeIDChanged);
  if (differs) Q_EMIT changed(Change::sourceLanguage);
}

void AppSettings::setTargetID(const QString& targetID) {
  const bool differs = set(targetID_, targetID, "targetID", &AppSettings::targetIDChanged);
  if (differs) Q_EMIT changed(Change::targetLanguage);
}

void AppSettings::setFontSize(double fontSize) {
  set(fontSize_, fontSize, "fontSize", &AppSettings::fontSizeChanged);
}

void AppSettings::stepFontSize(int steps) {
  setFontSize(steppedTextSize(fontSize_, steps));
}

void AppSettings::setTranslate(bool translate) {
  const bool differs = set(translate_, translate, "translate", &AppSettings::translateChanged);
  if (differs) Q_EMIT changed(Change::translation);
}

void AppSettings::setShowTranslationOnly(bool showTranslationOnly) {
  set(showTranslationOnly_, showTranslationOnly, "showTranslationOnly",
      &AppSettings::showTranslationOnlyChanged);
}

void AppSettings::setAutoSaveSessions(bool autoSaveSessions) {
  set(autoSaveSessions_, autoSaveSessions, "autoSaveSessions",
      &AppSettings::autoSaveSessionsChanged);
}

void AppSettings::setAskBeforeDiscarding(bool askBeforeDiscarding) {
  set(askBeforeDiscarding_, askBeforeDiscarding, "askBeforeDiscarding",
      &AppSettings::askBeforeDiscardingChanged);
}

void AppSettings::setKeepOnTop(bool keepOnTop) {
  set(keepOnTop_, keepOnTop, "keepOnTop", &AppSettings::keepOnTopChanged);
}

void AppSettings::setClickThrough(bool clickThrough) {
  set(clickThrough_, clickThrough, "clickThrough", &AppSettings::clickThroughChanged);
}

void AppSettings::setHideFromScreenSharing(bool hideFromScreenSharing) {
  set(hideFromScreenSharing_, hideFromScreenSharing, "hideFromScreenSharing",
      &AppSettings::hideFromScreenSharingChanged);
}

void AppSettings::setNumbersAsDigits(bool numbersAsDigits) {
  set(numbersAsDigits_, numbersAsDigits, "numbersAsDigits", &AppSettings::numbersAsDigitsChanged);
}

void AppSettings::setLabelsSpeakers(bool labelsSpeakers) {
  const bool differs =
      set(labelsSpeakers_, labelsSpeakers, "labelsSpeakers", &AppSettings::labelsSpeakersChanged);
  if (differs) Q_EMIT changed(Change::speakers);
}

void AppSettings::setPanelSet(PanelSet set) {
  panelSet_ = set;
  if (preferences_) preferences_->set(QStringLiteral("panelSet"), rawValue(set));
  Q_EMIT panelStyleChanged();
}

void AppSettings::setPanelStyle(const PanelStyle& style) {
  styles_[static_cast<std::size_t>(panelSet_)] = style;
  if (preferences_) {
    preferences_->set(styleKey(panelSet_), encodeStyle(style, standardStyle(panelSet_)));
  }
  Q_EMIT panelStyleChanged();
}

void AppSettings::setFollowsHighContrast(bool follows) {
  set(followsHighContrast_, follows, "followsHighContrast",
      &AppSettings::followsHighContrastChanged);
}

void AppSettings::setCaptionLines(int lines) {
  captionLines_ = std::clamp(lines, 0, maxCaptionLines);
  if (preferences_) preferences_->set(QStringLiteral("captionLines"), double(captionLines_));
  Q_EMIT captionLinesChanged();
}

void AppSettings::setUserWords(const QString& userWords) {
  set(userWords_, normalizedUserWords(userWords), "userWords", &AppSettings::userWordsChanged);
}

}  // namespace velun
