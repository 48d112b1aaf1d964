// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/main_menu.h"

#include "language/localization.h"
#include "ui/common/menu_closing.h"

#include <QApplication>
#include <QLayout>
#include <QMenuBar>
#include <QShortcut>

namespace velun {

namespace {

/// Calls an editing slot of the widget that has the keyboard, if it has such a slot.
void edit(const char* slot) {
  QWidget* target = QApplication::focusWidget();
  if (!target || target->metaObject()->indexOfMethod(QByteArray(slot) + "()") < 0) return;
  QMetaObject::invokeMethod(target, slot);
}

QAction* addEditing(QMenu& menu, const char* slot, const QKeySequence& shortcut) {
  QAction* action = menu.addAction(QString(), shortcut, &menu, [slot] { edit(slot); });
  action->setMenuRole(QAction::NoRole);
  return action;
}

}  // namespace

MainMenu::MainMenu(AppCommands& commands) : commands_(commands) {
  fill(commands);
  for (QMenu* menu : menus()) {
    popUp_.addMenu(menu);
    closeWhenChosen(*menu);
    connect(menu, &QMenu::aboutToShow, &commands, &AppCommands::refresh);
  }
  connect(&Localization::shared(), &Localization::languageChanged, this, &MainMenu::showTitles);
  showTitles();
}

std::array<QMenu*, 4> MainMenu::menus() {
  return {&applicationMenu_, &fileMenu_, &editMenu_, &viewMenu_};
}

void MainMenu::fill(AppCommands& commands) {
  using enum AppCommand;
  for (const AppCommand command : {showAbout, showSettings, checkForUpdates}) {
    applicationMenu_.addAction(&commands.action(command));
  }
  applicationMenu_.addSeparator();
  for (const AppCommand command :
       {togglePanel, movePanel, movePanelToNextScreen, toggleClickThrough}) {
    applicationMenu_.addAction(&commands.action(command));
  }
  applicationMenu_.addSeparator();
  applicationMenu_.addAction(&commands.action(terminate));
  for (const AppCommand command : {newSession, saveDocument, exportCurrentSession, renameSession,
                                   openSessionFile, captionRecording, showHistory}) {
    fileMenu_.addAction(&commands.action(command));
  }
  for (const AppCommand command : {biggerText, smallerText, defaultTextSize}) {
    viewMenu_.addAction(&commands.action(command));
  }
  copy_ = addEditing(editMenu_, "copy", Qt::CTRL | Qt::Key_C);
  selectAll_ = addEditing(editMenu_, "selectAll", Qt::CTRL | Qt::Key_A);
}

void MainMenu::showTitles() {
  applicationMenu_.setTitle(QStringLiteral("Velun"));
  fileMenu_.setTitle(L("File", "파일"));
  editMenu_.setTitle(L("Edit", "편집"));
  viewMenu_.setTitle(L("View", "보기"));
  copy_->setText(L("Copy", "복사"));
  selectAll_->setText(L("Select All", "전체 선택"));
}

void MainMenu::install(QWidget* window, Place place, MenuMaker makeMenu) {
  for (QMenu* menu : menus()) window->addActions(menu->actions());
  auto* bar = new QMenuBar(window);
  if (place == Place::insideToo && window->layout()) {
    window->layout()->setMenuBar(bar);
  } else if (!bar->isNativeMenuBar()) {
    // No global menu, and no room for a menu bar.
    delete bar;
    auto* open = new QShortcut(Qt::Key_F10, window);
    connect(open, &QShortcut::activated, this,
            [this, window, makeMenu] { popUp(window, makeMenu); });
    return;
  }
  for (QMenu* menu : menus()) bar->addMenu(menu);
}

void MainMenu::popUp(QWidget* window, const MenuMaker& makeMenu) {
  const QPoint corner = window->mapToGlobal(QPoint(0, 0));
  if (!makeMenu) return popUp_.popup(corner);
  commands_.refresh();
  QMenu* menu = makeMenu().release();
  menu->setAttribute(Qt::WA_DeleteOnClose);
  for (const QMenu* part : menus()) {
    QMenu* own = makeMenu().release();
    own->setParent(menu, own->windowFlags());
    own->setTitle(part->title());
    own->addActions(part->actions());
    menu->addMenu(own);
  }
  menu->popup(corner);
}

}  // namespace velun
