// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_view_model.h"
#include "ui/library/settings_notes.h"

#include <functional>
#include <QScrollArea>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QVBoxLayout;

namespace velun {

/// The form of all settings. Every control writes its setting at once; a chooser writes only when
/// the user picks, and shows a stored value that is not on its list as it is. Main thread.
class SettingsView final : public QScrollArea {
  Q_OBJECT

 public:
  /// The model must outlive the view.
  SettingsView(CaptionViewModel& model, std::function<void()> openRecordsFolder,
               SettingsNotes notes, QWidget* parent = nullptr);

  /// As wide as its controls; what is higher scrolls.
  QSize minimumSizeHint() const override;

 private:
  void addLanguageSection(QVBoxLayout* form);
  void addCaptionsSection(QVBoxLayout* form);
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
  SettingsNotes notes_;

  QLabel* languageHeading_;
  QComboBox* language_;
  QLabel* captionsHeading_;
  QLabel* inputLabel_;
  QComboBox* input_;
  QLabel* localeLabel_;
  QComboBox* locale_;
  QLabel* downloadNote_;
  QLabel* fontSizeLabel_;
  QComboBox* fontSize_;
  QCheckBox* keepOnTop_;
  QCheckBox* hideFromSharing_;
  QLabel* hideFromSharingNote_;
  QLabel* hideFromSharingHere_;
  QLabel* translationHeading_;
  QCheckBox* translate_;
  QLabel* targetLabel_;
  QComboBox* target_;
  QCheckBox* translationOnly_;
  QLabel* savingHeading_;
  QCheckBox* autoSave_;
  QLabel* autoSaveNote_;
  QCheckBox* ask_;
  QLabel* askNote_;
  QPushButton* openFolder_;
};

}  // namespace velun
