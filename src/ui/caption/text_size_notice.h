// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/caption_colors.h"

#include <memory>
#include <QVariantAnimation>
#include <QWidget>

namespace velun {

class AppSettings;
class Clock;
class ScheduledCall;

/// Shows the text size over the middle of a widget for a moment after it was set, and lets screen
/// readers say it. Transparent to the mouse. Main thread.
class TextSizeNotice final : public QWidget {
  Q_OBJECT

 public:
  /// A sibling of `over`. All references must outlive the notice.
  TextSizeNotice(AppSettings& settings, Clock& clock, QWidget& over);
  ~TextSizeNotice() override;

  void setColors(const CaptionColors& colors);
  /// What it shows, such as "18 pt".
  const QString& text() const { return text_; }

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void present();
  void fade();
  void place();

  AppSettings& settings_;
  Clock& clock_;
  QWidget& over_;
  CaptionColors colors_;
  QString text_;
  std::unique_ptr<ScheduledCall> hiding_;
  QVariantAnimation opacity_{this};
};

}  // namespace velun
