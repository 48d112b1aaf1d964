// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"

#include <functional>
#include <memory>
#include <QToolButton>

namespace velun {

/// Copies a whole transcript as plain text and says for two seconds that it did.
class CopyTranscriptButton final : public QToolButton {
  Q_OBJECT

 public:
  /// `text` gives the transcript at the moment of the click. `captionStyle`: white on the dark
  /// panel, symbol only. `clock` must outlive the button.
  CopyTranscriptButton(std::function<QString()> text, bool captionStyle, Clock& clock,
                       QWidget* parent = nullptr);

  /// Whether it says "Copied" now.
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
