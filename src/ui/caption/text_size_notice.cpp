// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/text_size_notice.h"

#include "language/localization.h"
#include "settings/app_settings.h"

#include <QEvent>

namespace velun {

TextSizeNotice::TextSizeNotice(AppSettings& settings, Clock& clock, QWidget& over)
    : CaptionNotice(Kind::value, clock, over.parentWidget()), settings_(settings), over_(over) {
  over.installEventFilter(this);
  connect(&settings, &AppSettings::fontSizeChanged, this, &TextSizeNotice::present);
}

void TextSizeNotice::present() {
  const QString size = QString::number(settings_.fontSize());
  place(over_.geometry());
  showText(L(size + " pt", size + "포인트"),
           L("Text size " + size + " points", "글자 크기 " + size + "포인트"));
}

bool TextSizeNotice::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Resize || event->type() == QEvent::Move) place(over_.geometry());
  return CaptionNotice::eventFilter(watched, event);
}

}  // namespace velun
