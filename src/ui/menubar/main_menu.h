// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/menubar/menu_bar_actions.h"

#include <array>
#include <QMenu>
#include <QObject>
#include <QPointer>
#include <vector>

namespace velun {

/// The application's main menu. Its keys work in every window that it was installed in; a window
/// with room for a menu bar shows it there, a desktop with a global menu on top of the screen, and
/// F10 opens it in the windows that have neither. Main thread.
class MainMenu final : public QObject {
  Q_OBJECT

 public:
  /// Where a window shows the menu.
  enum class Place {
    /// Only in a global menu.
    globalOnly,
    /// In a bar of its own where there is no global menu.
    insideToo,
  };

  explicit MainMenu(const MenuBarActions& actions, QObject* parent = nullptr);
  ~MainMenu() override;

  /// Makes every item anew, in the interface language in force, for all windows.
  void rebuild();

  /// Once for each window, before it is first shown.
  void install(QWidget* window, Place place);

  /// Enables and titles every item as its command stands now.
  void validate();

  /// The menus in order: the application's, File, Edit.
  std::array<QMenu*, 3> menus();

 private:
  void addCommand(QMenu& menu, const QString& title, AppCommand command, const QKeySequence& key);
  void addEditing(const QString& title, const char* slot, const QKeySequence& key);
  void addKeysTo(QWidget* window);
  void popUp(QWidget* window);

  MenuBarActions actions_;
  QMenu applicationMenu_;
  QMenu fileMenu_;
  QMenu editMenu_;
  /// Holds the three where there is no bar.
  QMenu popUp_;
  std::vector<QPointer<QWidget>> windows_;
};

}  // namespace velun
