// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "ui/caption/caption_colors.h"
#include "ui/common/padded_label.h"

#include <memory>
#include <QVariantAnimation>

namespace velun {

/// A short text over captions that fades after a moment. The pointer goes through it; screen
/// readers announce it. Main thread.
class CaptionNotice : public PaddedLabel {
  Q_OBJECT

 public:
  enum class Kind {
    /// A sentence at the top, for four seconds.
    message,
    /// A number in the middle, for 1.2 seconds.
    value,
  };

  /// `clock` must outlive the notice.
  CaptionNotice(Kind kind, Clock& clock, QWidget* parent);

  void setColors(const CaptionColors& colors);

  /// Shows the text, in place of an earlier one. Screen readers say `spoken`, or the text where
  /// that is empty.
  void showText(const QString& text, const QString& spoken = {});
  /// Hides it at once.
  void clear();

  /// Centres it at the top or in the middle of `area`, in the parent's points, and keeps it there.
  void place(const QRect& area);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void fit();
  void fade();

  const Kind kind_;
  Clock& clock_;
  CaptionColors colors_;
  QRect area_;
  std::unique_ptr<ScheduledCall> hiding_;
  QVariantAnimation opacity_{this};
};

}  // namespace velun
