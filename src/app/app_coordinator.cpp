// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/app_coordinator.h"

#include "app/information_windows.h"
#include "app/remote_commands.h"
#include "app/session_library.h"
#include "captions/caption_file.h"
#include "captions/caption_publisher.h"
#include "captions/session_titler.h"
#include "language/localization.h"
#include "model/speaker.h"
#include "platform/desktop/application_service.h"
#include "platform/desktop/desktop_platform.h"
#include "platform/desktop/file_manager.h"
#include "platform/desktop/sound_settings.h"
#include "platform/desktop/tray_host.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/main_task.h"
#include "platform/foundation/preference_store.h"
#include "ui/caption/caption_panel.h"
#include "ui/caption/caption_window_controller.h"
#include "ui/common/frame_keeper.h"
#include "ui/common/shortcut_set.h"
#include "ui/common/window_presentation.h"
#include "ui/menubar/menu_bar_controller.h"
#include "ui/menubar/status_item_notice.h"
#include "ui/settings/settings_window_controller.h"

#include <QApplication>
#include <QDialog>

namespace velun {

AppCoordinator::AppCoordinator(CaptionViewModel& model, const AppServices& services)
    : model_(model),
      services_(services),
      recordings_(model.settings(), model.store(), services.recordingSource, services.translation,
                  services.clock),
      ending_(model, recordings_, services.question),
      commands_(model, [this] { return windowState(); }) {
  connect(&commands_, &AppCommands::triggered, this, &AppCoordinator::perform);
  const auto windowMade = [this](QWidget* window) {
    prepareWindow(window);
  };
  sessions_ = std::make_unique<SessionLibrary>(model, recordings_, services, windowMade);
  information_ = std::make_unique<InformationWindows>(services, windowMade);
}

AppCoordinator::~AppCoordinator() {
  // Its editor of keys reports to the commands until the end, when it loses the keyboard.
  settingsWindow_.reset();
}

void AppCoordinator::launch() {
  const CaptionWindowServices services{.desktop = services_.desktop,
                                       .translation = services_.translation,
                                       .frames = services_.preferences,
                                       .clock = services_.clock,
                                       .betterCaptions = services_.betterCaptions,
                                       .smallerRecognizer = services_.smallerRecognizer,
                                       .audio = services_.audio};
  captionWindow_ = std::make_unique<CaptionWindowController>(model_, commands_, services);
  menuBar_ = std::make_unique<MenuBarController>(model_, services_.trayHost, commands_);
  menuBar_->mainMenu().install(&captionWindow_->panel(), MainMenu::Place::globalOnly,
                               [this] { return captionWindow_->makeMenu(); });
  observe();
  shareCaptions();
  if (services_.shortcuts) {
    shortcuts_ =
        std::make_unique<ShortcutSet>(commands_, *services_.shortcuts, services_.preferences);
  }
  startTask(this, [this] { return model_.loadLanguages(); });
  services_.trayHost.search();
}

void AppCoordinator::reopen() {
  if (QWidget* question = QApplication::activeModalWidget()) {
    WindowPresentation::present(*question);
  } else {
    // The way back to a panel that cannot be clicked, also without a tray.
    if (model_.settings().clickThrough()) model_.settings().setClickThrough(false);
    captionWindow_->show();
  }
}

void AppCoordinator::open(const QList<QUrl>& files) {
  const auto* question = qobject_cast<QDialog*>(QApplication::activeModalWidget());
  if (!question) return sessions_->open(files);
  // It has to be answered first.
  reopen();
  connect(
      question, &QDialog::finished, this, [this, files] { open(files); }, Qt::QueuedConnection);
}

void AppCoordinator::prepareWindow(QWidget* window) {
  if (!window->objectName().isEmpty()) new FrameKeeper(*window, services_.preferences);
  captionWindow_->keepReadable(*window);
  // The content of a window of fixed size leaves no room for a menu bar.
  const bool isFixed = window->minimumSize() == window->maximumSize();
  menuBar_->mainMenu().install(window,
                               isFixed ? MainMenu::Place::globalOnly : MainMenu::Place::insideToo);
}

WindowState AppCoordinator::windowState() const {
  return {.isPanelVisible = captionWindow_ && captionWindow_->isShown(),
          .canClickThrough = services_.desktop.capabilities().passesClicks,
          .canPlacePanel = services_.desktop.capabilities().placesWindows,
          .canOpenSoundSettings = services_.soundSettings && services_.soundSettings->isAvailable(),
          .isHistoryActive = sessions_ && sessions_->isKeyWindow(),
          .hasSelection = sessions_ && sessions_->hasSelection(),
          .hasStatusIcons = services_.trayHost.protocol().has_value()};
}

void AppCoordinator::perform(AppCommand command) {
  commands_.refresh();
  if (WindowPresentation::isModalOpen() || !commands_.action(command).isEnabled()) return;
  AppSettings& settings = model_.settings();
  switch (command) {
    case AppCommand::toggleCaptions:
      return toggleCaptions();
    case AppCommand::selectComputer:
      return settings.setUseMic(false);
    case AppCommand::selectMicrophone:
      return settings.setUseMic(true);
    case AppCommand::selectBoth:
      return settings.setInputChoice(InputChoice::both);
    case AppCommand::toggleKeepOnTop:
      return settings.setKeepOnTop(!settings.keepOnTop());
    case AppCommand::toggleClickThrough:
      return settings.setClickThrough(!settings.clickThrough());
    case AppCommand::togglePanel:
      return captionWindow_->toggle();
    case AppCommand::showPanel:
      return captionWindow_->show();
    case AppCommand::restorePosition:
      return captionWindow_->restorePosition();
    case AppCommand::movePanel:
      return captionWindow_->moveToNextPlace();
    case AppCommand::movePanelToNextScreen:
      return captionWindow_->moveToNextScreen();
    case AppCommand::biggerText:
      return settings.stepFontSize(1);
    case AppCommand::smallerText:
      return settings.stepFontSize(-1);
    case AppCommand::defaultTextSize:
      return settings.setFontSize(kDefaultTextSize);
    case AppCommand::newSession:
      return ending_.newSession();
    case AppCommand::saveSession:
      return saveSession();
    case AppCommand::saveDocument:
      return sessions_->isKeyWindow() ? sessions_->saveHistoryFile() : saveSession();
    case AppCommand::exportCurrentSession:
      return sessions_->exportCurrentSession();
    case AppCommand::renameSession:
      return sessions_->renameSession();
    case AppCommand::openSessionFile:
      return sessions_->openSessionFile();
    case AppCommand::captionRecording:
      return sessions_->captionRecording();
    case AppCommand::openSessionsFolder:
      return openSessionsFolder();
    case AppCommand::showHistory:
      return sessions_->showHistory();
    case AppCommand::showSettings:
      return showSettings();
    case AppCommand::showModels:
      showSettings();
      return settingsWindow_->showModels();
    case AppCommand::openSoundSettings:
      return services_.soundSettings->open();
    case AppCommand::checkForUpdates:
      return information_->checkForUpdates();
    case AppCommand::showAbout:
      return information_->showAbout();
    case AppCommand::terminate:
      Q_EMIT terminationRequested();
  }
}

void AppCoordinator::toggleCaptions() {
  // The pending question about this session assumes that captions stay off.
  if (ending_.isDeciding()) return;
  if (model_.isRunning()) {
    model_.stop();
  } else {
    captionWindow_->show();
    model_.start();
  }
}

void AppCoordinator::saveSession() {
  if (!model_.saveCurrentSession() && model_.saveError()) {
    services_.question.ask(errorQuestion(*model_.saveError()));
  }
}

void AppCoordinator::showSettings() {
  if (!settingsWindow_) {
    settingsWindow_ = std::make_unique<SettingsWindowController>(
        model_, [this] { perform(AppCommand::openSessionsFolder); }, services_.notes,
        services_.models,
        DesktopSettings{.audio = services_.audio,
                        .login = services_.loginStart,
                        .shortcuts = shortcuts_.get(),
                        .sharing = services_.sharing,
                        .captionFile = captionFile_.get(),
                        .library = services_.library});
    prepareWindow(&settingsWindow_->window());
  }
  // Its notes depend on them.
  services_.desktop.refreshCapabilities();
  settingsWindow_->show();
}

void AppCoordinator::openSessionsFolder() {
  try {
    services_.files.openFolder(model_.store().directory);
  } catch (const std::exception& error) {
    services_.question.ask(errorQuestion(descriptionOf(error)));
  }
}

void AppCoordinator::observe() {
  const auto applyLook = [this] {
    look_.set(services_.desktop.colorScheme(), services_.desktop.prefersHighContrast(),
              services_.desktop.prefersReducedMotion());
  };
  connect(&services_.desktop, &DesktopPlatform::colorSchemeChanged, this, applyLook);
  connect(&services_.desktop, &DesktopPlatform::contrastChanged, this, applyLook);
  connect(&services_.desktop, &DesktopPlatform::motionChanged, this, applyLook);
  connect(&services_.desktop, &DesktopPlatform::capabilitiesChanged, &commands_,
          &AppCommands::refresh);
  applyLook();

  connect(&Localization::shared(), &Localization::languageChanged, this, [this] {
    if (settingsWindow_) settingsWindow_->updateTitle();
    sessions_->updateTitles();
    // The lists are sorted by names in the interface language.
    startTask(this, [this] { return model_.loadLanguages(); });
  });

  connect(
      captionWindow_.get(), &CaptionWindowController::speakerNaming, this,
      [this](const QString& speaker) {
        const auto name = services_.askSpeaker(speaker, speakersOf(model_.lines()));
        if (name) model_.renameSpeaker(speaker, *name);
      },
      // After the click, which the question would otherwise interrupt.
      Qt::QueuedConnection);
  connect(captionWindow_.get(), &CaptionWindowController::visibilityChanged, &commands_,
          &AppCommands::refresh);
  connect(sessions_.get(), &SessionLibrary::selectionChanged, &commands_, &AppCommands::refresh);
  connect(&ending_, &SessionEnding::sessionReplaced, this, [this] {
    sessions_->library().reload();
    captionWindow_->show();
  });
  remote_ = std::make_unique<RemoteCommands>(commands_, model_, services_.application);
  connect(&services_.application, &ApplicationService::activated, this, &AppCoordinator::reopen);
  connect(&services_.application, &ApplicationService::openRequested, this, &AppCoordinator::open);
  connect(&services_.trayHost, &TrayHost::missing, this, &AppCoordinator::explainMissingTray);
  connect(&services_.trayHost, &TrayHost::found, &commands_, &AppCommands::refresh);
}

void AppCoordinator::shareCaptions() {
  if (services_.library) titler_ = std::make_unique<SessionTitler>(model_, *services_.library);
  if (!services_.sharing) return;
  if (services_.feed) {
    publisher_ = std::make_unique<CaptionPublisher>(model_, *services_.sharing, *services_.feed);
  }
  captionFile_ = std::make_unique<CaptionFile>(model_, *services_.sharing);
  connect(captionFile_.get(), &CaptionFile::errorChanged, this, [this] {
    if (captionFile_->error()) captionWindow_->notify(*captionFile_->error());
  });
}

void AppCoordinator::explainMissingTray() {
  captionWindow_->show();
  commands_.refresh();
  static constexpr auto kExplained = "statusItemExplained";
  if (services_.preferences.get<bool>(kExplained).value_or(false)) return;
  services_.preferences.set(kExplained, true);
  showStatusItemNotice();
}

}  // namespace velun
