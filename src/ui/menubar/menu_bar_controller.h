// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/tray_host.h"
#include "ui/menubar/main_menu.h"
#include "ui/menubar/status_menu.h"

#include <memory>
#include <QSystemTrayIcon>

namespace velun {

class CaptionViewModel;

/// The status icon with its menu, and the application's main menu. Main thread.
class MenuBarController final : public QObject {
  Q_OBJECT

 public:
  /// All references must outlive the controller. The status icon appears once `host` is found.
  MenuBarController(CaptionViewModel& model, TrayHost& host, AppCommands& commands);
  ~MenuBarController() override;

  MainMenu& mainMenu() { return mainMenu_; }
  QMenu& menu() { return menu_; }

  /// A click on the status icon; `isPlain` unless it was made with the right button or with the
  /// Control key pressed.
  void statusItemClicked(bool isPlain);

 Q_SIGNALS:
  /// The status icon was handed to the desktop.
  void statusItemShown();

 private:
  void showStatusItem();
  void updateState();
  void activated(QSystemTrayIcon::ActivationReason reason);
  QIcon icon(bool paused) const;

  CaptionViewModel& model_;
  TrayHost& host_;
  AppCommands& commands_;
  MainMenu mainMenu_;
  StatusMenu menu_;
  /// Null until a host is found.
  std::unique_ptr<QSystemTrayIcon> statusItem_;
};

}  // namespace velun
