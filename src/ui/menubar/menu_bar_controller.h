// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/tray_host.h"
#include "ui/menubar/main_menu.h"
#include "ui/menubar/menu_item.h"

#include <memory>
#include <QSystemTrayIcon>

namespace velun {

class CaptionViewModel;

/// The status item with its menu, and the application's main menu. Main thread.
class MenuBarController final : public QObject {
  Q_OBJECT

 public:
  /// `model` and `host` must outlive the controller. The status item appears when `host` was
  /// found.
  MenuBarController(CaptionViewModel& model, TrayHost& host, MenuBarActions actions,
                    QObject* parent = nullptr);
  ~MenuBarController() override;

  MainMenu& mainMenu() { return mainMenu_; }
  QMenu& menu() { return menu_; }

  /// The status item's image, tool tip and accessible name follow the model.
  void updateState();

  /// Brings the status menu up to date with the model, the settings and the windows.
  void menuNeedsUpdate();

  /// Brings both menus up to date; the status menu only while nobody looks at it.
  void updateMenus();

  /// A click on the status item; `isPlain` unless it was made with the right button or with the
  /// control key held.
  void statusItemClicked(bool isPlain);

 Q_SIGNALS:
  /// The status item was handed to the desktop.
  void statusItemShown();

 private:
  void showStatusItem();
  void activated(QSystemTrayIcon::ActivationReason reason);
  void popUpMenu();
  QColor iconColour() const;

  CaptionViewModel& model_;
  TrayHost& host_;
  MenuBarActions actions_;
  MainMenu mainMenu_;
  QMenu menu_;
  std::vector<MenuItem> items_;
  /// Null until a host is there.
  std::unique_ptr<QSystemTrayIcon> statusItem_;
};

}  // namespace velun
