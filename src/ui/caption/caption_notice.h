// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "ui/caption/caption_colors.h"

#include <memory>
#include <QLabel>

namespace velun {

/// A short text over the panel's captions that disappears after a moment. The pointer goes through
/// it; screen readers announce it. Main thread.
class CaptionNotice final : public QLabel {
  Q_OBJECT

 public:
  /// `clock` must outlive the notice.
  CaptionNotice(Clock& clock, QWidget* parent);

  void setColors(const CaptionColors& colors);

  /// Shows the text for four seconds, in place of an earlier one.
  void showText(const QString& text);
  /// Hides it at once.
  void clear();

  /// Centres it at the top of `area`, in the parent's points, and keeps it there.
  void place(const QRect& area);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void fit();

  Clock& clock_;
  CaptionColors colors_;
  QRect area_;
  std::unique_ptr<ScheduledCall> hiding_;
};

}  // namespace velun
