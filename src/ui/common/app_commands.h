// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "settings/input_choice.h"

#include <functional>
#include <QAction>
#include <vector>

class QMenu;

namespace velun {

class CaptionViewModel;

/// Everything that a user can ask the program as a whole to do.
enum class AppCommand {
  toggleCaptions,
  selectComputer,
  selectMicrophone,
  selectBoth,
  toggleKeepOnTop,
  /// The pointer goes through the panel, or no longer.
  toggleClickThrough,
  togglePanel,
  showPanel,
  restorePosition,
  /// Moves the panel to the next of nine places on its screen.
  movePanel,
  movePanelToNextScreen,
  biggerText,
  smallerText,
  defaultTextSize,
  newSession,
  saveSession,
  /// Saves what the active window shows: the selected saved session or the current one.
  saveDocument,
  exportCurrentSession,
  renameSession,
  openSessionFile,
  /// Shows the recordings that are captioned, and lets the user choose one.
  captionRecording,
  openSessionsFolder,
  showHistory,
  showSettings,
  /// The page "Languages & Models" of the settings.
  showModels,
  openSoundSettings,
  checkForUpdates,
  showAbout,
  terminate,
};

/// The command that chooses what is captioned.
constexpr AppCommand selectCommand(InputChoice choice) {
  switch (choice) {
    case InputChoice::computer:
      return AppCommand::selectComputer;
    case InputChoice::microphone:
      return AppCommand::selectMicrophone;
    case InputChoice::both:
      return AppCommand::selectBoth;
  }
  return AppCommand::selectComputer;
}

/// What the commands depend on besides the model.
struct WindowState {
  bool isPanelVisible = false;
  /// The desktop can let the pointer through the panel.
  bool canClickThrough = false;
  /// The program can choose the panel's place.
  bool canPlacePanel = false;
  /// A program for the desktop's sound settings is installed.
  bool canOpenSoundSettings = false;
  /// The saved-sessions window has the keyboard.
  bool isHistoryActive = false;
  /// A saved session is selected.
  bool hasSelection = false;
  /// The desktop shows status icons, whose menu has the commands of the whole program.
  bool hasStatusIcons = true;
};

/// Every command, stated once, as an action: text, shortcut, whether it is enabled and checked. The
/// object name is the name for other programs, empty if they cannot use it; the data is the state
/// that they see, invalid if it has none. The main menu shows these actions; `addItem` shows them
/// elsewhere. Main thread.
class AppCommands final : public QObject {
  Q_OBJECT

 public:
  /// `model` must outlive the commands. `windows` is called whenever the actions are refreshed.
  AppCommands(const CaptionViewModel& model, std::function<WindowState()> windows);

  QAction& action(AppCommand command) const;
  const std::vector<QAction*>& actions() const { return actions_; }
  /// Null if there is no command with that name for other programs.
  QAction* find(const QString& name) const;

  WindowState windows() const { return windows_(); }

  /// Updates every action. Follows the model, its settings, the interface language and the active
  /// window by itself; other changes of the windows have to be reported by calling it.
  void refresh();

 Q_SIGNALS:
  /// An enabled action was triggered.
  void triggered(AppCommand command);
  /// The actions are up to date; emitted by every `refresh`.
  void refreshed();

 private:
  struct Row;
  std::vector<Row> rows() const;

  const CaptionViewModel& model_;
  std::function<WindowState()> windows_;
  /// Indexed by `AppCommand`; owned as children.
  std::vector<QAction*> actions_;
};

/// Appends an item to `menu` that triggers `command`. It has no shortcut and shows the command as
/// it is now; `showCommand` brings it up to date.
QAction* addItem(QMenu& menu, QAction& command);

/// Copies the text, whether it is enabled and the check mark.
void showCommand(QAction& item, const QAction& command);

}  // namespace velun
