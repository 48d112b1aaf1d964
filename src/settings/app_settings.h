// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/app_language.h"
#include "settings/device_choice.h"
#include "settings/input_choice.h"
#include "settings/input_label.h"
#include "settings/panel_style.h"
#include "settings/program_choice.h"
#include "settings/text_size.h"

#include <QObject>
#include <QString>

namespace velun {

class PreferenceStore;

/// The user's choices. Every set writes the store and emits the property's signal, also when the
/// value is unchanged; `changed` follows only when it differs. Main thread.
class AppSettings final : public QObject {
  Q_OBJECT

 public:
  /// The changes after which recognition or translation has to be set up again.
  enum class Change { input, sourceLanguage, targetLanguage, translation, speakers };

  /// Reads every value once and sets the interface language. Null keeps nothing beyond the run.
  /// `preferences` must outlive this object.
  explicit AppSettings(PreferenceStore* preferences = nullptr);

  AppLanguage language() const { return language_; }
  InputChoice inputChoice() const {
    if (captionsBoth_) return InputChoice::both;
    return useMic_ ? InputChoice::microphone : InputChoice::computer;
  }
  /// Whether the microphone alone is captioned.
  bool useMic() const { return inputChoice() == InputChoice::microphone; }
  /// Whether the input is captioned, alone or with the other one.
  bool captions(AudioInput input) const;
  /// How lines are marked while both inputs are captioned.
  const InputLabel& inputLabel(AudioInput input) const {
    return inputLabels_[static_cast<std::size_t>(input)];
  }
  /// The name to show: the user's, or the default one.
  QString inputName(AudioInput input) const;
  /// The output whose sound is captioned, and the microphone.
  const DeviceChoice& output() const { return output_; }
  const DeviceChoice& microphone() const { return microphone_; }
  const DeviceChoice& device(AudioInput input) const {
    return input == AudioInput::microphone ? microphone_ : output_;
  }
  /// The microphone with `useMic`, otherwise the output.
  const DeviceChoice& device() const { return useMic() ? microphone_ : output_; }
  /// Whose sound of the computer's is captioned. With one program, or all but one, the output does
  /// not matter.
  const ProgramChoice& program() const { return program_; }
  /// The recognizer's locale identifier, such as "en_US".
  const QString& localeID() const { return localeID_; }
  /// The translation target's language identifier, such as "ko".
  const QString& targetID() const { return targetID_; }
  /// Caption text size in points.
  double fontSize() const { return fontSize_; }
  bool translate() const { return translate_; }
  bool showTranslationOnly() const { return showTranslationOnly_; }
  bool autoSaveSessions() const { return autoSaveSessions_; }
  bool askBeforeDiscarding() const { return askBeforeDiscarding_; }
  bool keepOnTop() const { return keepOnTop_; }
  /// The pointer goes through the panel.
  bool clickThrough() const { return clickThrough_; }
  bool hideFromScreenSharing() const { return hideFromScreenSharing_; }
  bool numbersAsDigits() const { return numbersAsDigits_; }
  /// Whether lines tell who speaks, if a speaker model is installed.
  bool labelsSpeakers() const { return labelsSpeakers_; }
  /// Names and terms that recognizers prefer, one a line, as `normalizedUserWords` gives them.
  const QString& userWords() const { return userWords_; }

  /// The ready set in use, and its style with the user's changes.
  PanelSet panelSet() const { return panelSet_; }
  const PanelStyle& panelStyle() const { return styles_[static_cast<std::size_t>(panelSet_)]; }
  /// Whether the panel has plain colours while the desktop asks for high contrast.
  bool followsHighContrast() const { return followsHighContrast_; }
  /// The number of text lines that the panel's height is made for, up to `maxCaptionLines`; 0 for a
  /// panel of any size.
  int captionLines() const { return captionLines_; }
  static constexpr int maxCaptionLines = 6;

  void setLanguage(AppLanguage language);
  /// Captions the microphone alone, or the computer alone.
  void setUseMic(bool useMic);
  void setInputChoice(InputChoice choice);
  void setInputLabel(AudioInput input, const InputLabel& label);
  void setOutput(const DeviceChoice& output);
  void setMicrophone(const DeviceChoice& microphone);
  void setDevice(AudioInput input, const DeviceChoice& device);
  /// Sets the microphone with `useMic`, otherwise the output.
  void setDevice(const DeviceChoice& device);
  void setProgram(const ProgramChoice& program);
  void setLocaleID(const QString& localeID);
  void setTargetID(const QString& targetID);
  void setFontSize(double fontSize);
  /// Sets the size `steps` sizes above the present one (`steppedTextSize`).
  void stepFontSize(int steps);
  void setTranslate(bool translate);
  void setShowTranslationOnly(bool showTranslationOnly);
  void setAutoSaveSessions(bool autoSaveSessions);
  void setAskBeforeDiscarding(bool askBeforeDiscarding);
  void setKeepOnTop(bool keepOnTop);
  void setClickThrough(bool clickThrough);
  void setHideFromScreenSharing(bool hideFromScreenSharing);
  void setNumbersAsDigits(bool numbersAsDigits);
  void setLabelsSpeakers(bool labelsSpeakers);
  void setUserWords(const QString& userWords);
  void setPanelSet(PanelSet set);
  /// Changes the style of the set in use.
  void setPanelStyle(const PanelStyle& style);
  void setFollowsHighContrast(bool follows);
  void setCaptionLines(int lines);

 Q_SIGNALS:
  void languageChanged();
  void inputChoiceChanged();
  void inputLabelsChanged();
  void outputChanged();
  void microphoneChanged();
  void programChanged();
  void localeIDChanged();
  void targetIDChanged();
  void fontSizeChanged();
  void translateChanged();
  void showTranslationOnlyChanged();
  void autoSaveSessionsChanged();
  void askBeforeDiscardingChanged();
  void keepOnTopChanged();
  void clickThroughChanged();
  void hideFromScreenSharingChanged();
  void numbersAsDigitsChanged();
  void labelsSpeakersChanged();
  void userWordsChanged();
  /// The set or its style.
  void panelStyleChanged();
  void followsHighContrastChanged();
  void captionLinesChanged();
  /// Emitted from inside the setter, once the new value is in force and stored.
  void changed(AppSettings::Change change);

 private:
  /// Stores, writes and notifies. Returns whether the new value differs from the old one.
  template <class Value>
  bool set(Value& property, const Value& value, const char* key, void (AppSettings::*notify)());

  DeviceChoice readDevice(const char* key) const;
  ProgramChoice readProgram() const;
  void readInputLabels();
  /// Returns whether the device differs.
  bool storeDevice(DeviceChoice& property, const DeviceChoice& device, const char* key,
                   void (AppSettings::*notify)());
  void readStyles();

  PreferenceStore* preferences_;
  AppLanguage language_ = AppLanguage::english;
  bool useMic_ = false;
  bool captionsBoth_ = false;
  std::array<InputLabel, allAudioInputs.size()> inputLabels_;
  DeviceChoice output_;
  DeviceChoice microphone_;
  ProgramChoice program_;
  QString localeID_ = QStringLiteral("en_US");
  QString targetID_ = QStringLiteral("ko");
  double fontSize_ = kDefaultTextSize;
  bool translate_ = false;
  bool showTranslationOnly_ = false;
  bool autoSaveSessions_ = false;
  bool askBeforeDiscarding_ = true;
  bool keepOnTop_ = true;
  bool clickThrough_ = false;
  bool hideFromScreenSharing_ = false;
  bool numbersAsDigits_ = true;
  bool labelsSpeakers_ = false;
  QString userWords_;
  PanelSet panelSet_ = PanelSet::calm;
  std::array<PanelStyle, allPanelSets.size()> styles_;
  bool followsHighContrast_ = true;
  int captionLines_ = 0;
};

}  // namespace velun
