// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/desktop_capabilities.h"

#include <QWidget>

namespace velun {

class HeaderStateIcon;
class CaptionViewModel;
class Clock;
class CopyTranscriptButton;

/// The header's icons for the state of the window, and the copy button.
class HeaderState final : public QWidget {
  Q_OBJECT

 public:
  /// `model` and `clock` must outlive the view.
  HeaderState(CaptionViewModel& model, Clock& clock, QWidget* parent);

  /// What the desktop supports now, which the icons' texts must not exceed.
  void setCapabilities(const DesktopCapabilities& capabilities);

  CopyTranscriptButton& copyButton() const { return *copyButton_; }
  HeaderStateIcon& keptOnTop() const { return *keptOnTop_; }
  HeaderStateIcon& hiddenFromSharing() const { return *hiddenFromSharing_; }

 private:
  void present();
  void presentLevel();
  void presentHiding();
  void presentCopying();

  CaptionViewModel& model_;
  DesktopCapabilities capabilities_;
  HeaderStateIcon* keptOnTop_;
  HeaderStateIcon* hiddenFromSharing_;
  CopyTranscriptButton* copyButton_;
};

}  // namespace velun
