// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "ui/caption/panel_button.h"

#include <functional>
#include <memory>

namespace velun {

/// Copies a whole transcript as plain text and shows "Copied" for two seconds.
class CopyTranscriptButton final : public PanelButton {
  Q_OBJECT

 public:
  /// `text` is called at each click. `captionStyle` means a white symbol without text, for the dark
  /// panel. `clock` must outlive the button.
  CopyTranscriptButton(std::function<QString()> text, bool captionStyle, Clock& clock,
                       QWidget* parent = nullptr);

  /// Whether it currently shows "Copied".
  bool copied() const { return copied_; }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void copy();
  void present();

  std::function<QString()> text_;
  bool captionStyle_;
  Clock& clock_;
  bool copied_ = false;
  std::unique_ptr<ScheduledCall> reset_;
};

}  // namespace velun
