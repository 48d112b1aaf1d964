// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_view_model.h"
#include "ui/library/desktop_settings.h"
#include "ui/library/settings_notes.h"

#include <functional>
#include <QScrollArea>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace velun {

class LanguageChooser;
class DeviceChooser;
class LoginStart;

/// The form of all settings. Every control writes its setting at once. A combo box writes only when
/// the user chooses, and also shows a stored value that is not in its list. Main thread.
class SettingsView final : public QScrollArea {
  Q_OBJECT

 public:
  /// `model`, `notes` and everything in `desktop` must outlive the view; `notes` may be null.
  SettingsView(CaptionViewModel& model, std::function<void()> openRecordsFolder,
               const SettingsNotes* notes, const DesktopSettings& desktop = {},
               QWidget* parent = nullptr);

  /// The width of the controls; the form scrolls vertically.
  QSize minimumSizeHint() const override;

 private:
  void addLanguageSection(QVBoxLayout* form, LoginStart* login);
  void addCaptionsSection(QVBoxLayout* form, AudioPlatform* audio);
  void addTranslationSection(QVBoxLayout* form);
  void addSavingSection(QVBoxLayout* form);
  void followSettings();
  void present();
  void presentChoices();
  void presentTexts();
  void presentToggles();
  void presentNotes();

  CaptionViewModel& model_;
  AppSettings& settings_;
  const SettingsNotes* notes_;

  QLabel* languageHeading_;
  QComboBox* language_;
  QLabel* captionsHeading_;
  QLabel* inputLabel_;
  QComboBox* input_;
  QLabel* deviceLabel_ = nullptr;
  /// Null if the devices are not known.
  DeviceChooser* device_ = nullptr;
  QLabel* localeLabel_;
  LanguageChooser* locale_;
  QLabel* downloadNote_;
  QLabel* fontSizeLabel_;
  QComboBox* fontSize_;
  QCheckBox* keepOnTop_;
  QCheckBox* clickThrough_;
  QLabel* clickThroughNote_;
  QCheckBox* hideFromSharing_;
  QLabel* hideFromSharingNote_;
  QLabel* hideFromSharingHere_;
  QCheckBox* numbers_;
  QLabel* numbersNote_;
  QLabel* translationHeading_;
  QCheckBox* translate_;
  QLabel* targetLabel_;
  LanguageChooser* target_;
  QCheckBox* translationOnly_;
  QLabel* savingHeading_;
  QCheckBox* autoSave_;
  QLabel* autoSaveNote_;
  QCheckBox* ask_;
  QLabel* askNote_;
  QPushButton* openFolder_;
};

}  // namespace velun
