// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace velun::test {

/// A display with a window manager and a compositor, for as long as this lives. Made before the
/// application object, which then runs on it.
class VirtualDisplay final {
 public:
  VirtualDisplay();
  ~VirtualDisplay();

  /// Runs a program on the display, such as xdotool, and gives what it wrote. The event loop goes
  /// on meanwhile.
  static QString run(const QString& program, const QStringList& arguments);

  /// Moves the pointer there, as a user would.
  static void movePointer(int x, int y);
  static void pressButton();
  static void releaseButton();
  static void click(int x, int y);

 private:
  QProcess process_;
};

}  // namespace velun::test
