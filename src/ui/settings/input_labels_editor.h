// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/app_settings.h"

#include <array>
#include <QWidget>

class QLabel;
class QLineEdit;

namespace velun {

class ColorChooser;

/// The names and colours of the inputs while both are captioned. Main thread.
class InputLabelsEditor final : public QWidget {
  Q_OBJECT

 public:
  /// `settings` must outlive the editor.
  explicit InputLabelsEditor(AppSettings& settings, QWidget* parent = nullptr);

 private:
  struct Row {
    AudioInput input = AudioInput::computer;
    QLabel* label = nullptr;
    QLineEdit* name = nullptr;
    ColorChooser* color = nullptr;
  };

  void add(Row& row);
  void present();

  AppSettings& settings_;
  std::array<Row, allAudioInputs.size()> rows_;
};

}  // namespace velun
