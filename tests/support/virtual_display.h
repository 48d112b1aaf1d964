// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcess>
#include <QString>
#include <QStringList>

namespace velun::test {

/// A display with a window manager and a compositor that ends with this object. Create it before
/// the application object, which then uses it.
class VirtualDisplay final {
 public:
  VirtualDisplay();
  ~VirtualDisplay();

  /// Runs a program on the display, such as xdotool, and returns its output. The event loop keeps
  /// running.
  static QString run(const QString& program, const QStringList& arguments);

  static void movePointer(int x, int y);
  static void pressButton();
  static void releaseButton();
  static void click(int x, int y);

  /// Whether no program, such as the window manager during a move, holds the pointer.
  static bool isPointerFree();

 private:
  QProcess process_;
};

}  // namespace velun::test
