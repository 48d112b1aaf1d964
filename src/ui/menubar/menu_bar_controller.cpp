// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/menu_bar_controller.h"

#include "captions/caption_view_model.h"
#include "language/localization.h"
#include "ui/menubar/status_icon.h"

#include <QCursor>
#include <QGuiApplication>

namespace velun {

MenuBarController::MenuBarController(CaptionViewModel& model, TrayHost& host, AppCommands& commands)
    : model_(model), host_(host), commands_(commands), mainMenu_(commands), menu_(model, commands) {
  connect(&model_, &CaptionViewModel::isRunningChanged, this, &MenuBarController::updateState);
  connect(&Localization::shared(), &Localization::languageChanged, this,
          &MenuBarController::updateState);
  connect(&host_, &TrayHost::found, this, &MenuBarController::showStatusItem);
  if (host_.protocol()) showStatusItem();
}

MenuBarController::~MenuBarController() = default;

void MenuBarController::showStatusItem() {
  statusItem_ = std::make_unique<QSystemTrayIcon>();
  connect(statusItem_.get(), &QSystemTrayIcon::activated, this, &MenuBarController::activated);
  statusItem_->setContextMenu(&menu_);
  updateState();
  statusItem_->show();
  Q_EMIT statusItemShown();
}

void MenuBarController::updateState() {
  if (!statusItem_) return;
  const bool isPaused = !model_.isRunning();
  statusItem_->setIcon(icon(isPaused));
  statusItem_->setToolTip(StatusIcon::description(isPaused));
}

QIcon MenuBarController::icon(bool paused) const {
  if (host_.coloursSymbolicIcons()) return StatusIcon::symbolic(paused);
  if (const auto requested = host_.foreground()) {
    return StatusIcon::drawn(paused, QColor::fromRgb(*requested));
  }
  return StatusIcon::outlined(paused);
}

void MenuBarController::activated(QSystemTrayIcon::ActivationReason reason) {
  switch (reason) {
    case QSystemTrayIcon::Trigger:
    case QSystemTrayIcon::DoubleClick:  // the second of two quick clicks
      statusItemClicked(!(QGuiApplication::queryKeyboardModifiers() & Qt::ControlModifier));
      break;
    case QSystemTrayIcon::Context:
      // Qt has already opened the menu of an embedded icon. A host on the bus that asks for the
      // menu instead of drawing it gets it from us.
      if (host_.protocol() == TrayHost::Protocol::statusNotifier) statusItemClicked(false);
      break;
    default:
      break;
  }
}

void MenuBarController::statusItemClicked(bool isPlain) {
  if (isPlain && model_.isRunning() && !commands_.windows().isPanelVisible) {
    commands_.action(AppCommand::showPanel).trigger();
    return;
  }
  // Above or below the icon if its place is known; hosts on the bus do not report it.
  const QRect icon = statusItem_ ? statusItem_->geometry() : QRect();
  menu_.popup(icon.isValid() ? icon.bottomLeft() : QCursor::pos());
}

}  // namespace velun
