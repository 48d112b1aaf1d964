// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/window_system.h"

#include "platform/desktop/desktop_services.h"
#include "platform/desktop/linux/wayland_session.h"

namespace velun {

namespace {

QStringList& addedVariables() {
  static QStringList names;
  return names;
}

void add(const char* name, const char* value) {
  if (!qEnvironmentVariableIsSet(name)) addedVariables() << QString::fromLatin1(name);
  qputenv(name, value);
}

}  // namespace

void preferWindowSystem() {
  const QByteArray chosen = qgetenv("QT_QPA_PLATFORM");
  const bool isNative = chosen.isEmpty() ? offersLayerSurfaces() : chosen.startsWith("wayland");
  if (isNative) {
    // A window with Qt::BypassWindowManagerHint gets a surface without a role.
    add("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
    // Otherwise Qt takes every window to lie at the corner of its screen.
    add("QT_WAYLAND_DISABLE_FIXED_POSITIONS", "1");
  }
  if (!chosen.isEmpty()) return;
  if (isNative) {
    add("QT_QPA_PLATFORM", "wayland;xcb");
  } else if (qEnvironmentVariableIsSet("DISPLAY")) {
    // No other protocol of Wayland keeps a window above others; XWayland can.
    add("QT_QPA_PLATFORM", "xcb;wayland");
  }
}

QProcessEnvironment environmentAtStart() {
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  for (const QString& name : addedVariables()) environment.remove(name);
  return environment;
}

}  // namespace velun
