// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/frame_keeper.h"

#include "ui/common/window_frame.h"

#include <QEvent>
#include <QWidget>

namespace velun {

FrameKeeper::FrameKeeper(QWidget& window, PreferenceStore& frames)
    : QObject(&window), window_(window), frames_(frames) {
  restoreFrame(window, frames, window.objectName());
  window.installEventFilter(this);
}

bool FrameKeeper::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::Hide:
    case QEvent::Close:
    case QEvent::WindowDeactivate:
      // A window that was never shown has no place yet.
      if (window_.testAttribute(Qt::WA_WState_Created)) {
        storeFrame(window_, frames_, window_.objectName());
      }
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace velun
