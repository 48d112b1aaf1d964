// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/main_menu.h"

#include "language/localization.h"
#include "ui/common/menu_closing.h"

#include <QApplication>
#include <QLayout>
#include <QMenuBar>
#include <QShortcut>
#include <QWindow>

namespace velun {

namespace {

/// The command of a menu's action, kept as its data.
AppCommand commandOf(const QAction& action) {
  return AppCommand(action.data().toInt());
}

/// Runs an editing operation of whatever has the keyboard; what does not know it is left alone.
void edit(const char* slot) {
  QWidget* target = QApplication::focusWidget();
  if (!target || target->metaObject()->indexOfMethod(QByteArray(slot) + "()") < 0) return;
  QMetaObject::invokeMethod(target, slot);
}

/// Takes an action out of its menu and every window, whose keys it would otherwise keep. Deleted
/// later, because it may be the one that was chosen.
void discard(QAction* action) {
  for (QObject* owner : action->associatedObjects()) {
    if (auto* widget = qobject_cast<QWidget*>(owner)) widget->removeAction(action);
  }
  action->deleteLater();
}

}  // namespace

MainMenu::MainMenu(const MenuBarActions& actions, QObject* parent)
    : QObject(parent), actions_(actions) {
  for (QMenu* menu : menus()) {
    popUp_.addMenu(menu);
    closeWhenChosen(*menu);
    connect(menu, &QMenu::aboutToShow, this, &MainMenu::validate);
  }
  rebuild();
  // What a command applies to follows the active window.
  connect(qApp, &QGuiApplication::focusWindowChanged, this, &MainMenu::validate);
}

MainMenu::~MainMenu() = default;

std::array<QMenu*, 3> MainMenu::menus() {
  return {&applicationMenu_, &fileMenu_, &editMenu_};
}

void MainMenu::rebuild() {
  using enum AppCommand;
  for (QMenu* menu : menus()) {
    for (QAction* action : menu->actions()) discard(action);
  }

  applicationMenu_.setTitle(QStringLiteral("Velun"));
  addCommand(applicationMenu_, L("About Velun", "Velun 정보"), showAbout, {});
  addCommand(applicationMenu_, L("Settings…", "설정…"), showSettings, Qt::CTRL | Qt::Key_Comma);
  addCommand(applicationMenu_, L("Check for Updates…", "업데이트 확인…"), checkForUpdates, {});
  applicationMenu_.addSeparator();
  addCommand(applicationMenu_, L("Show/Hide Caption Window", "자막 창 보기/숨기기"), togglePanel,
             Qt::CTRL | Qt::Key_L);
  applicationMenu_.addSeparator();
  addCommand(applicationMenu_, L("Quit Velun", "Velun 종료"), terminate, Qt::CTRL | Qt::Key_Q);

  fileMenu_.setTitle(L("File", "파일"));
  addCommand(fileMenu_, L("New Session", "새 세션"), newSession, Qt::CTRL | Qt::Key_N);
  addCommand(fileMenu_, L("Save Current Session", "현재 세션 저장"), saveDocument,
             Qt::CTRL | Qt::Key_S);
  addCommand(fileMenu_, L("Export…", "내보내기…"), exportCurrentSession,
             Qt::CTRL | Qt::SHIFT | Qt::Key_S);
  addCommand(fileMenu_, L("Open Session File…", "기록 파일 열기…"), openSessionFile,
             Qt::CTRL | Qt::Key_O);
  addCommand(fileMenu_, L("Saved Sessions…", "저장 기록…"), showHistory,
             Qt::CTRL | Qt::SHIFT | Qt::Key_H);

  editMenu_.setTitle(L("Edit", "편집"));
  addEditing(L("Copy", "복사"), "copy", Qt::CTRL | Qt::Key_C);
  addEditing(L("Select All", "전체 선택"), "selectAll", Qt::CTRL | Qt::Key_A);

  validate();
  std::erase(windows_, nullptr);
  for (const QPointer<QWidget>& window : windows_) addKeysTo(window);
}

void MainMenu::addCommand(QMenu& menu, const QString& title, AppCommand command,
                          const QKeySequence& key) {
  QAction* action = menu.addAction(title);
  action->setShortcut(key);
  action->setData(int(command));
  // The toolkit would otherwise guess a place from the title.
  action->setMenuRole(QAction::NoRole);
  connect(action, &QAction::triggered, this, [this, command] {
    if (actions_.validate(command).isEnabled) actions_.perform(command);
  });
}

void MainMenu::addEditing(const QString& title, const char* slot, const QKeySequence& key) {
  QAction* action = editMenu_.addAction(title);
  action->setShortcut(key);
  action->setMenuRole(QAction::NoRole);
  connect(action, &QAction::triggered, this, [slot] { edit(slot); });
}

void MainMenu::install(QWidget* window, Place place) {
  windows_.emplace_back(window);
  addKeysTo(window);
  auto* bar = new QMenuBar(window);
  if (place == Place::insideToo && window->layout()) {
    window->layout()->setMenuBar(bar);
  } else if (!bar->isNativeMenuBar()) {
    // No global menu, and no room for a bar.
    delete bar;
    auto* open = new QShortcut(Qt::Key_F10, window);
    connect(open, &QShortcut::activated, this, [this, window] { popUp(window); });
    return;
  }
  for (QMenu* menu : menus()) bar->addMenu(menu);
}

void MainMenu::addKeysTo(QWidget* window) {
  for (QMenu* menu : menus()) window->addActions(menu->actions());
}

void MainMenu::validate() {
  for (QMenu* menu : {&applicationMenu_, &fileMenu_}) {
    for (QAction* action : menu->actions()) {
      if (action->isSeparator()) continue;
      const CommandValidation validation = actions_.validate(commandOf(*action));
      action->setEnabled(validation.isEnabled);
      if (validation.title) action->setText(*validation.title);
    }
  }
}

void MainMenu::popUp(QWidget* window) {
  popUp_.popup(window->mapToGlobal(QPoint(0, 0)));
}

}  // namespace velun
