// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;
class QPlainTextEdit;

namespace velun {

class AppSettings;
class SettingsNotes;

/// The user's list of names and terms in the settings window. Stores every change at once. Main
/// thread.
class UserWordsEditor final : public QWidget {
  Q_OBJECT

 public:
  /// Both must outlive the editor; `notes` may be null.
  UserWordsEditor(AppSettings& settings, const SettingsNotes* notes);

 private:
  void present();
  void presentNotes();
  void store();

  AppSettings& settings_;
  const SettingsNotes* notes_;
  QLabel* label_;
  QPlainTextEdit* list_;
  QLabel* note_;
  QLabel* unknown_;
};

}  // namespace velun
