// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/app_services.h"
#include "captions/caption_view_model.h"
#include "ui/caption/caption_actions.h"
#include "ui/common/window_look.h"
#include "ui/menubar/app_command.h"

#include <functional>
#include <memory>
#include <QObject>
#include <QPointer>
#include <vector>

class QWidget;

namespace velun {

class CaptionWindowController;
class InformationWindows;
class MenuBarController;
class SessionLibrary;
class SettingsWindowController;

/// The one controller of the application: owns the windows and the menu bar, and carries out every
/// command. Main thread.
class AppCoordinator final : public QObject {
  Q_OBJECT

 public:
  /// Hears whether the program is to end.
  using TerminationReply = std::function<void(bool shouldTerminate)>;

  /// `model` and everything in `services` must outlive the coordinator.
  AppCoordinator(CaptionViewModel& model, const AppServices& services);
  ~AppCoordinator() override;

  /// Makes the caption panel (not shown), the status item and the main menu.
  void launch();

  /// The program was launched again or called to the front.
  void reopen();

  /// Carries out a command, unless it does not apply now or a question is open.
  void perform(AppCommand command);

  /// How a command stands at the moment, for the main menu and for other programs.
  CommandValidation validate(AppCommand command) const;

  void toggleCaptions();
  void togglePanel();
  void showPanel();
  void restorePosition();
  void saveSession();
  void saveDocument();
  void newSession();
  void showSettings();
  void openSessionsFolder();
  void selectComputer();
  void selectMicrophone();
  void toggleKeepOnTop();

  /// Ends captions, asks what becomes of unsaved lines, and replies from the event loop. A request
  /// while one is being decided shares its reply.
  void prepareToTerminate(TerminationReply reply);

  /// A quit is being decided.
  bool isTerminating() const { return terminating_; }
  /// A quit or a new session is being decided.
  bool isDeciding() const { return terminating_ || replacing_; }

  /// The last write before an end that cannot wait; nothing is asked or started any more.
  void endNow();

  CaptionWindowController& captionWindow();
  MenuBarController& menuBar();
  SessionLibrary& sessions() { return *sessions_; }
  SettingsWindowController* settingsWindow() { return settingsWindow_.get(); }

 Q_SIGNALS:
  /// The user asked to quit.
  void terminationRequested();
  /// Captions have ended, and what becomes of unsaved lines is being asked next.
  void terminationQuestionReached();

 private:
  static QCoro::Task<> decideNewSession(QPointer<AppCoordinator> self, bool wasRunning);
  static QCoro::Task<> decideTermination(QPointer<AppCoordinator> self, bool wasRunning);
  void beginTermination(bool wasRunning);
  void observe();
  void observeLanguage();
  void observeLook();
  void observeApplication();
  void publishActions();
  void explainMissingStatusItem();
  void installMainMenu(QWidget* window);
  CaptionActions captionActions();

  CaptionViewModel& model_;
  AppServices services_;
  WindowLook look_;
  std::unique_ptr<CaptionWindowController> captionWindow_;
  std::unique_ptr<MenuBarController> menuBar_;
  std::unique_ptr<SessionLibrary> sessions_;
  std::unique_ptr<InformationWindows> information_;
  /// Null until it was first shown.
  std::unique_ptr<SettingsWindowController> settingsWindow_;
  /// A new session is being decided.
  bool replacing_ = false;
  bool terminating_ = false;
  bool ended_ = false;
  std::vector<TerminationReply> replies_;
};

}  // namespace velun
