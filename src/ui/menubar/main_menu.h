// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/common/app_commands.h"

#include <array>
#include <QMenu>
#include <QObject>

namespace velun {

/// The application's main menu. Its shortcuts work in every window that it was installed in. A
/// window with room for a menu bar shows it there, a desktop with a global menu at the top of the
/// screen, and F10 opens it in windows that have neither. Main thread.
class MainMenu final : public QObject {
  Q_OBJECT

 public:
  /// Where a window shows the menu.
  enum class Place {
    /// Only in a global menu.
    globalOnly,
    /// In a menu bar of its own where there is no global menu.
    insideToo,
  };

  /// `commands` must outlive the menu.
  explicit MainMenu(AppCommands& commands);

  /// Makes an empty menu in a window's own look.
  using MenuMaker = std::function<std::unique_ptr<QMenu>()>;

  /// Call it once for each window, before it is first shown. Where the window has no menu bar, F10
  /// opens the menus; `makeMenu` makes them if it is given.
  void install(QWidget* window, Place place, MenuMaker makeMenu = {});

  /// The menus in order: the application's, File, Edit, View.
  std::array<QMenu*, 4> menus();

 private:
  void fill(AppCommands& commands);
  void showTitles();
  void popUp(QWidget* window, const MenuMaker& makeMenu);

  AppCommands& commands_;
  QMenu applicationMenu_;
  QMenu fileMenu_;
  QMenu editMenu_;
  QMenu viewMenu_;
  /// Holds them all where there is no menu bar.
  QMenu popUp_;
  QAction* copy_ = nullptr;
  QAction* selectAll_ = nullptr;
};

}  // namespace velun
