// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/caption_notice.h"

namespace velun {

class AppSettings;

/// Shows the text size over the middle of a widget for a moment after it was set. Main thread.
class TextSizeNotice final : public CaptionNotice {
  Q_OBJECT

 public:
  /// A sibling of `over`. All references must outlive the notice.
  TextSizeNotice(AppSettings& settings, Clock& clock, QWidget& over);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void present();

  AppSettings& settings_;
  QWidget& over_;
};

}  // namespace velun
