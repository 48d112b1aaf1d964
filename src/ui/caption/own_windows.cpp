// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/own_windows.h"

#include "ui/caption/caption_appearance.h"
#include "ui/common/window_frame.h"

#include <algorithm>
#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

namespace velun {

OwnWindows::OwnWindows(const QWidget& panel) : panel_(panel) {
  connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, [this](QWindow* now) {
    if (!now) {
      setFront(nullptr);
    } else if (now == panel_.windowHandle() && overlapPanel()) {
      // Its level stays: some desktops can change it only by hiding the panel, which would lose the
      // click that activated it.
      now->raise();
    }
  });
}

void OwnWindows::add(QWidget& window) {
  window.installEventFilter(this);
}

bool OwnWindows::overlapsPanel(const QWidget* window) const {
  return window && window->isVisible() && !window->isMinimized() &&
         window->frameGeometry().intersects(panel_.geometry());
}

bool OwnWindows::overlapPanel() const {
  return front_ && std::ranges::any_of(stack_, [this](const QPointer<QWidget>& window) {
           return overlapsPanel(window);
         });
}

void OwnWindows::raiseOverlapping() {
  for (const QPointer<QWidget>& window : stack_) {
    if (overlapsPanel(window)) window->raise();
  }
}

bool OwnWindows::eventFilter(QObject* watched, QEvent* event) {
  auto* window = static_cast<QWidget*>(watched);
  switch (event->type()) {
    case QEvent::Show:
      if (!event->spontaneous()) place(*window);
      setFront(window);
      break;
    case QEvent::WindowActivate:
      setFront(window);
      break;
    case QEvent::Hide:
      if (window == front_) setFront(nullptr);
      break;
    case QEvent::Move:
    case QEvent::Resize:
    case QEvent::WindowStateChange:
      if (front_) Q_EMIT frontChanged();
      break;
    default:
      break;
  }
  return QObject::eventFilter(watched, event);
}

void OwnWindows::setFront(QWidget* window) {
  if (front_ == window) return;
  front_ = window;
  if (window) {
    stack_.removeIf([window](const QPointer<QWidget>& each) { return !each || each == window; });
    stack_.append(window);
  }
  Q_EMIT frontChanged();
}

void OwnWindows::place(QWidget& window) const {
  if (window.testAttribute(Qt::WA_Moved) || !panel_.isVisible()) return;
  const QSize size = window.size().grownBy(usualFrameMargins());
  const QRect area = window.screen()->availableGeometry();
  const QRect centred = centredIn(area, size);
  if (!centred.intersects(panel_.geometry())) return;
  // The panel grows by its header when the pointer is over it.
  const QRect grown = panel_.geometry().adjusted(0, -CaptionAppearance::headerHeight, 0, 0);
  std::optional<QRect> beside = placedBeside(grown, area, size);
  if (!beside) beside = placedBeside(panel_.geometry(), area, size);
  if (beside) window.move(beside->topLeft());
}

}  // namespace velun
