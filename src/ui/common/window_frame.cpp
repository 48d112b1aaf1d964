// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/window_frame.h"

#include "platform/foundation/preference_store.h"

#include <algorithm>
#include <QGuiApplication>
#include <QScreen>
#include <QStringList>
#include <QWidget>

namespace velun {

namespace {

std::optional<QRect> parsed(const QString& text) {
  const QStringList parts = text.split(QLatin1Char(' '));
  if (parts.size() != 4) return std::nullopt;
  int numbers[4] = {};
  for (int i = 0; i < 4; ++i) {
    bool isNumber = false;
    numbers[i] = parts[i].toInt(&isNumber);
    if (!isNumber) return std::nullopt;
  }
  const QRect frame(numbers[0], numbers[1], numbers[2], numbers[3]);
  return frame.isEmpty() ? std::nullopt : std::optional(frame);
}

/// The frame, moved and shrunk into the screen that shows most of it, else the main one.
QRect visibleFrame(const QRect& frame) {
  const QScreen* best = QGuiApplication::primaryScreen();
  if (!best) return frame;
  const auto shown = [&frame](const QScreen* screen) {
    const QRect part = screen->availableGeometry() & frame;
    return part.isEmpty() ? qint64{0} : qint64{part.width()} * part.height();
  };
  for (const QScreen* screen : QGuiApplication::screens()) {
    if (shown(screen) > shown(best)) best = screen;
  }
  const QRect area = best->availableGeometry();
  QRect moved(frame.topLeft(), frame.size().boundedTo(area.size()));
  moved.moveLeft(std::clamp(moved.left(), area.left(), area.right() + 1 - moved.width()));
  moved.moveTop(std::clamp(moved.top(), area.top(), area.bottom() + 1 - moved.height()));
  return moved;
}

}  // namespace

void storeFrame(const QWidget& window, PreferenceStore* frames, const QString& name) {
  if (!frames || window.isMaximized() || window.isFullScreen()) return;
  const QRect frame = window.geometry();
  const QString text = QStringLiteral("%1 %2 %3 %4")
                           .arg(frame.x())
                           .arg(frame.y())
                           .arg(frame.width())
                           .arg(frame.height());
  if (frames->get<QString>(name) != text) frames->set(name, text);
}

bool restoreFrame(QWidget& window, const PreferenceStore* frames, const QString& name) {
  if (!frames) return false;
  const std::optional<QRect> frame = parsed(frames->get<QString>(name).value_or(QString()));
  if (!frame) return false;
  window.setGeometry(visibleFrame(*frame));
  return true;
}

}  // namespace velun
