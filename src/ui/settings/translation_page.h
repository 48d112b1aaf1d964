// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_view_model.h"
#include "ui/settings/settings_page.h"

class QCheckBox;
class QLabel;

namespace velun {

class LanguageChooser;

/// The settings page "Translation". Main thread.
class TranslationPage final : public SettingsPage {
  Q_OBJECT

 public:
  /// `model` must outlive the page.
  explicit TranslationPage(CaptionViewModel& model, QWidget* parent = nullptr);

  /// The title of the page in the interface language.
  static QString title();

 private:
  void present();
  void presentTarget();
  void presentToggles();

  AppSettings& settings_;
  QLabel* heading_;
  QCheckBox* translate_;
  QLabel* targetLabel_;
  LanguageChooser* target_;
  QCheckBox* translationOnly_;
};

}  // namespace velun
