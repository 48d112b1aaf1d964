// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/caption_colors.h"

#include <QWidget>

namespace velun {

class AppCommands;
class CaptionButton;
class CaptionViewModel;

/// What the user can do about a failure that has ended captions, or about a device that captions
/// wait for, as buttons in a row. Hidden while there is neither. Main thread.
class FailureButtons final : public QWidget {
  Q_OBJECT

 public:
  /// `model` and `commands` must outlive the view.
  FailureButtons(CaptionViewModel& model, AppCommands& commands, QWidget* parent);

  void setColors(const CaptionColors& colors);
  /// Whether the row stands in the middle, and not at the left. It stands at the left at first.
  void setCentered(bool isCentered);
  /// Whether the buttons are to be shown.
  bool isWanted() const;

  CaptionButton& tryAgain() const { return *tryAgain_; }
  CaptionButton& openSoundSettings() const { return *openSoundSettings_; }
  CaptionButton& useDefaultDevice() const { return *useDefaultDevice_; }
  CaptionButton& chooseRecognizer() const { return *chooseRecognizer_; }

 Q_SIGNALS:
  /// isWanted() may have changed.
  void changed();

 private:
  void present();
  bool hasFailure() const;

  CaptionViewModel& model_;
  AppCommands& commands_;
  CaptionButton* tryAgain_;
  CaptionButton* useDefaultDevice_;
  CaptionButton* openSoundSettings_;
  CaptionButton* chooseRecognizer_;
};

}  // namespace velun
