// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/app_settings.h"
#include "ui/settings/desktop_settings.h"
#include "ui/settings/settings_page.h"

#include <functional>

class QCheckBox;
class QLabel;
class QPushButton;

namespace velun {

/// The settings page "Sessions": what is saved, and what other programs get of the captions. Main
/// thread.
class SessionsPage final : public SettingsPage {
  Q_OBJECT

 public:
  /// `settings` and everything in `desktop` must outlive the page.
  SessionsPage(AppSettings& settings, std::function<void()> openRecordsFolder,
               const DesktopSettings& desktop = {}, QWidget* parent = nullptr);

  /// The title of the page in the interface language.
  static QString title();

 private:
  void present();
  void presentToggles();

  AppSettings& settings_;
  /// May be null.
  LibrarySettings* library_;
  QLabel* heading_;
  QCheckBox* autoSave_;
  QLabel* autoSaveNote_;
  QCheckBox* ask_;
  QLabel* askNote_;
  QCheckBox* titles_;
  QPushButton* openFolder_;
};

}  // namespace velun
