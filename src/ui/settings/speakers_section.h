// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;
class QPushButton;

namespace velun {

class AppSettings;
class SettingsNotes;

/// The check box that turns speakers' names on. Without a speaker model it is disabled, and a
/// button leads to the models. Main thread.
class SpeakersSection final : public QWidget {
  Q_OBJECT

 public:
  /// Both must outlive the section; `notes` may be null.
  SpeakersSection(AppSettings& settings, const SettingsNotes* notes, QWidget* parent = nullptr);

 Q_SIGNALS:
  /// The user wants to install a model.
  void modelsRequested();

 private:
  void present();

  AppSettings& settings_;
  const SettingsNotes* notes_;
  QCheckBox* toggle_;
  QLabel* note_;
  QPushButton* install_;
};

}  // namespace velun
