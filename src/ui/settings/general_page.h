// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/app_settings.h"
#include "ui/settings/desktop_settings.h"
#include "ui/settings/settings_page.h"

class QComboBox;
class QLabel;

namespace velun {

/// The settings page "General": the interface language, the start at login, and the keys that work
/// in every window. Main thread.
class GeneralPage final : public SettingsPage {
  Q_OBJECT

 public:
  /// `settings` and everything in `desktop` must outlive the page.
  GeneralPage(AppSettings& settings, const DesktopSettings& desktop, QWidget* parent = nullptr);

  /// The title of the page in the interface language.
  static QString title();

 private:
  void present();

  AppSettings& settings_;
  QLabel* languageHeading_;
  QComboBox* language_;
};

}  // namespace velun
