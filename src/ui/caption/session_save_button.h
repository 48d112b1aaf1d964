// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/header_button.h"

namespace velun {

class AppCommands;
class CaptionViewModel;

/// Saves the current session; once it is saved, opens the saved sessions.
class SessionSaveButton final : public HeaderButton {
  Q_OBJECT

 public:
  /// `model` and `commands` must outlive the button.
  SessionSaveButton(CaptionViewModel& model, AppCommands& commands, QWidget* parent = nullptr);

  /// Whether the session is in a file and the last write succeeded.
  bool saved() const;

 private:
  void present();

  CaptionViewModel& model_;
};

}  // namespace velun
