// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_view_model.h"
#include "ui/settings/desktop_settings.h"
#include "ui/settings/settings_notes.h"
#include "ui/settings/settings_page.h"

class QCheckBox;
class QComboBox;
class QLabel;

namespace velun {

class DeviceChooser;
class InputLabelsEditor;
class LanguageChooser;

/// The settings page "Captions": what is captioned, how words are written, and the caption window.
/// Main thread.
class CaptionsPage final : public SettingsPage {
  Q_OBJECT

 public:
  /// `model`, `notes` and everything in `desktop` must outlive the page; `notes` may be null.
  CaptionsPage(CaptionViewModel& model, const SettingsNotes* notes,
               const DesktopSettings& desktop = {}, QWidget* parent = nullptr);

  /// The title of the page in the interface language.
  static QString title();

 Q_SIGNALS:
  /// The user wants to install a model.
  void modelsRequested();

 private:
  void addCaptions(AudioPlatform* audio);
  void addWindow();
  void followSettings();
  void present();
  void presentTexts();
  void presentChoices();
  void presentDevices();
  void presentToggles();
  void presentNotes();

  CaptionViewModel& model_;
  AppSettings& settings_;
  const SettingsNotes* notes_;

  QLabel* captionsHeading_;
  QLabel* inputLabel_;
  QComboBox* input_;
  QLabel* deviceLabel_ = nullptr;
  /// Null if the devices are not known.
  DeviceChooser* device_ = nullptr;
  QLabel* microphoneLabel_ = nullptr;
  /// Beside `device_` while both inputs are captioned.
  DeviceChooser* microphone_ = nullptr;
  InputLabelsEditor* inputLabels_;
  QLabel* localeLabel_;
  LanguageChooser* locale_;
  QLabel* downloadNote_;
  QLabel* fontSizeLabel_;
  QComboBox* fontSize_;
  QCheckBox* numbers_;
  QLabel* numbersNote_;
  QLabel* windowHeading_;
  QCheckBox* keepOnTop_;
  QCheckBox* clickThrough_;
  QLabel* clickThroughNote_;
  QCheckBox* hideFromSharing_;
  QLabel* hideFromSharingNote_;
  QLabel* hideFromSharingHere_;
};

}  // namespace velun
