// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/menu_bar_controller.h"

#include "captions/caption_view_model.h"
#include "language/localization.h"
#include "ui/menubar/status_icon.h"
#include "ui/menubar/status_menu.h"

#include <QCursor>
#include <QGuiApplication>
#include <QPalette>

namespace velun {

MenuBarController::MenuBarController(CaptionViewModel& model, TrayHost& host,
                                     MenuBarActions actions, QObject* parent)
    : QObject(parent),
      model_(model),
      host_(host),
      actions_(std::move(actions)),
      mainMenu_(actions_) {
  connect(&menu_, &QMenu::aboutToShow, this, &MenuBarController::menuNeedsUpdate);
  connect(&model_, &CaptionViewModel::isRunningChanged, this, &MenuBarController::updateState);

  // Some hosts show the menu that they fetched last without asking; so it is kept up to date.
  using Model = CaptionViewModel;
  for (const auto signal :
       {&Model::isRunningChanged, &Model::isTransitioningChanged, &Model::sessionChanged,
        &Model::isSavingSessionChanged, &Model::savedURLChanged, &Model::saveErrorChanged}) {
    connect(&model_, signal, this, &MenuBarController::updateMenus);
  }
  for (const auto signal : {&AppSettings::useMicChanged, &AppSettings::keepOnTopChanged}) {
    connect(&model_.settings(), signal, this, &MenuBarController::updateMenus);
  }
  connect(&Localization::shared(), &Localization::languageChanged, this, [this] {
    updateState();
    updateMenus();
  });

  menuNeedsUpdate();
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
  const QColor colour = iconColour();
  statusItem_->setIcon(isPaused ? StatusIcon::paused(colour) : StatusIcon::active(colour));
  statusItem_->setToolTip(StatusIcon::description(isPaused));
}

QColor MenuBarController::iconColour() const {
  if (const auto asked = host_.foreground()) return QColor::fromRgb(*asked);
  return QGuiApplication::palette().color(QPalette::WindowText);
}

void MenuBarController::activated(QSystemTrayIcon::ActivationReason reason) {
  const bool isBusHost = host_.protocol() == TrayHost::Protocol::statusNotifier;
  switch (reason) {
    case QSystemTrayIcon::Trigger:
    case QSystemTrayIcon::DoubleClick:  // the second of two quick ones
      statusItemClicked(!(QGuiApplication::queryKeyboardModifiers() & Qt::ControlModifier));
      break;
    case QSystemTrayIcon::Context:
      // Embedded, the toolkit has opened the menu already; a host on the bus that asks for it
      // rather than drawing it itself gets it from us.
      if (isBusHost) statusItemClicked(false);
      break;
    default:
      break;
  }
}

void MenuBarController::statusItemClicked(bool isPlain) {
  if (isPlain && model_.isRunning() && !actions_.isPanelVisible()) {
    actions_.perform(AppCommand::showPanel);
    return;
  }
  popUpMenu();
}

void MenuBarController::popUpMenu() {
  // Above or below the item where its place is known; the bus does not tell it.
  const QRect item = statusItem_ ? statusItem_->geometry() : QRect();
  menu_.popup(item.isValid() ? item.bottomLeft() : QCursor::pos());
}

void MenuBarController::menuNeedsUpdate() {
  std::vector<MenuItem> items = statusMenuItems(model_, actions_.isPanelVisible());
  // Unchanged items stay as they are: a click that is under way must still find its item.
  if (items == items_) return;
  items_ = std::move(items);
  fillMenu(menu_, items_, [this](AppCommand command) {
    actions_.perform(command);
    // A chosen item has toggled its own mark, whatever became of the command.
    items_.clear();
    menuNeedsUpdate();
  });
}

void MenuBarController::updateMenus() {
  mainMenu_.validate();
  if (!menu_.isVisible()) menuNeedsUpdate();
}

}  // namespace velun
