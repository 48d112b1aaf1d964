// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/app_services.h"
#include "app/session_ending.h"
#include "captions/caption_view_model.h"
#include "ui/common/app_commands.h"
#include "ui/common/window_look.h"

#include <memory>
#include <QObject>

class QWidget;

namespace velun {

class CaptionFile;
class CaptionPublisher;
class CaptionWindowController;
class InformationWindows;
class MenuBarController;
class RemoteCommands;
class SessionLibrary;
class SessionTitler;
class SettingsWindowController;
class ShortcutSet;

/// Owns the windows, the status icon and the commands, and carries out the commands. Main thread.
class AppCoordinator final : public QObject {
  Q_OBJECT

 public:
  /// `model` and everything in `services` must outlive the coordinator.
  AppCoordinator(CaptionViewModel& model, const AppServices& services);
  ~AppCoordinator() override;

  /// Creates the caption panel (not shown), the status icon and the main menu. Call it once, before
  /// everything else.
  void launch();

  /// Shows the panel and lets it be clicked; brings an open question to the front instead.
  void reopen();
  /// Shows session files and earlier transcripts among the saved sessions.
  void open(const QList<QUrl>& files);

  /// Carries out a command, unless it is disabled or a question is open.
  void perform(AppCommand command);

  SessionEnding& ending() { return ending_; }
  const AppCommands& commands() const { return commands_; }
  RecordingQueue& recordings() { return recordings_; }
  CaptionWindowController& captionWindow() { return *captionWindow_; }
  MenuBarController& menuBar() { return *menuBar_; }
  SessionLibrary& sessions() { return *sessions_; }
  /// Null until it is first shown.
  SettingsWindowController* settingsWindow() { return settingsWindow_.get(); }

 Q_SIGNALS:
  /// The user asked to quit.
  void terminationRequested();

 private:
  void toggleCaptions();
  void saveSession();
  void openSessionsFolder();
  void showSettings();
  void observe();
  void shareCaptions();
  void explainMissingTray();
  void prepareWindow(QWidget* window);
  WindowState windowState() const;

  CaptionViewModel& model_;
  AppServices services_;
  WindowLook look_;
  RecordingQueue recordings_;
  SessionEnding ending_;
  std::unique_ptr<CaptionWindowController> captionWindow_;
  std::unique_ptr<MenuBarController> menuBar_;
  std::unique_ptr<SessionLibrary> sessions_;
  std::unique_ptr<InformationWindows> information_;
  /// Null unless other programs may get captions.
  std::unique_ptr<CaptionPublisher> publisher_;
  std::unique_ptr<CaptionFile> captionFile_;
  std::unique_ptr<SessionTitler> titler_;
  std::unique_ptr<SettingsWindowController> settingsWindow_;
  /// After the windows, whose state they depend on.
  AppCommands commands_;
  std::unique_ptr<RemoteCommands> remote_;
  /// Null without global shortcuts.
  std::unique_ptr<ShortcutSet> shortcuts_;
};

}  // namespace velun
