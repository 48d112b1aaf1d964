// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/desktop_capabilities.h"
#include "ui/caption/caption_colors.h"

#include <QWidget>

namespace velun {

class CaptionOverlayIcon;
class CaptionViewModel;
class Clock;
class CopyTranscriptButton;

/// The controls over a corner of the transcript while the pointer is over the panel: icons for the
/// window's state, and the copy button.
class CaptionOverlays final : public QWidget {
  Q_OBJECT

 public:
  /// `model` and `clock` must outlive the view.
  CaptionOverlays(CaptionViewModel& model, Clock& clock, QWidget* parent);

  void setColors(const CaptionColors& colors);
  /// What the desktop supports now, which the icons' texts must not exceed.
  void setCapabilities(const DesktopCapabilities& capabilities);

  CopyTranscriptButton& copyButton() const { return *copyButton_; }
  CaptionOverlayIcon& keptOnTop() const { return *keptOnTop_; }
  CaptionOverlayIcon& hiddenFromSharing() const { return *hiddenFromSharing_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void present();
  void presentLevel();
  void presentHiding();

  CaptionViewModel& model_;
  CaptionColors colors_;
  DesktopCapabilities capabilities_;
  CaptionOverlayIcon* keptOnTop_;
  CaptionOverlayIcon* hiddenFromSharing_;
  CopyTranscriptButton* copyButton_;
};

}  // namespace velun
