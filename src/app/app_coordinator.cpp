// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/app_coordinator.h"

#include "app/information_windows.h"
#include "app/named_actions.h"
#include "app/session_library.h"
#include "captions/discard_confirmation.h"
#include "language/localization.h"
#include "platform/desktop/application_service.h"
#include "platform/desktop/desktop_platform.h"
#include "platform/desktop/file_manager.h"
#include "platform/desktop/tray_host.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/main_task.h"
#include "platform/foundation/preference_store.h"
#include "ui/caption/caption_panel.h"
#include "ui/caption/caption_window_controller.h"
#include "ui/common/window_presentation.h"
#include "ui/library/settings_window_controller.h"
#include "ui/menubar/menu_bar_controller.h"
#include "ui/menubar/status_item_notice.h"

#include <QApplication>
#include <QWindow>
#include <utility>

namespace velun {

AppCoordinator::AppCoordinator(CaptionViewModel& model, const AppServices& services)
    : model_(model), services_(services) {
  const auto windowMade = [this](QWidget* window) {
    installMainMenu(window);
  };
  sessions_ = std::make_unique<SessionLibrary>(model, services, windowMade);
  information_ = std::make_unique<InformationWindows>(services, windowMade);
}

AppCoordinator::~AppCoordinator() = default;

void AppCoordinator::launch() {
  captionWindow();
  menuBar();
  observe();
  startTask(this, [this] { return model_.loadLanguages(); });
  services_.trayHost.search();
}

void AppCoordinator::reopen() {
  if (QWidget* question = QApplication::activeModalWidget()) {
    WindowPresentation::present(*question);
    return;
  }
  showPanel();
}

CaptionWindowController& AppCoordinator::captionWindow() {
  if (!captionWindow_) {
    const CaptionWindowServices services{.desktop = services_.desktop,
                                         .translation = services_.translation,
                                         .frames = services_.preferences,
                                         .clock = services_.clock};
    captionWindow_ = std::make_unique<CaptionWindowController>(model_, captionActions(), services);
  }
  return *captionWindow_;
}

MenuBarController& AppCoordinator::menuBar() {
  if (!menuBar_) {
    MenuBarActions actions;
    actions.perform = [this](AppCommand command) {
      perform(command);
    };
    actions.validate = [this](AppCommand command) {
      return validate(command);
    };
    actions.isPanelVisible = [this] {
      return captionWindow().isShown();
    };
    menuBar_ = std::make_unique<MenuBarController>(model_, services_.trayHost, actions);
    menuBar_->mainMenu().install(&captionWindow().panel(), MainMenu::Place::globalOnly);
  }
  return *menuBar_;
}

void AppCoordinator::installMainMenu(QWidget* window) {
  // What a window of a fixed size shows leaves no room for a bar.
  const bool isFixed = window->minimumSize() == window->maximumSize();
  menuBar().mainMenu().install(window,
                               isFixed ? MainMenu::Place::globalOnly : MainMenu::Place::insideToo);
}

CaptionActions AppCoordinator::captionActions() {
  const auto command = [this](AppCommand which) {
    return [this, which] {
      perform(which);
    };
  };
  CaptionActions actions;
  actions.toggleCaptions = command(AppCommand::toggleCaptions);
  actions.hide = command(AppCommand::togglePanel);
  actions.saveSession = command(AppCommand::saveSession);
  actions.showHistory = command(AppCommand::showHistory);
  actions.exportSession = command(AppCommand::exportCurrentSession);
  actions.newSession = command(AppCommand::newSession);
  actions.showSettings = command(AppCommand::showSettings);
  actions.setHeaderVisible = [this](bool visible) {
    captionWindow().setHeader(visible, true);
  };
  return actions;
}

void AppCoordinator::perform(AppCommand command) {
  if (WindowPresentation::isModalOpen() || !validate(command).isEnabled) return;
  switch (command) {
    case AppCommand::toggleCaptions:
      return toggleCaptions();
    case AppCommand::togglePanel:
      return togglePanel();
    case AppCommand::showPanel:
      return showPanel();
    case AppCommand::restorePosition:
      return restorePosition();
    case AppCommand::saveSession:
      return saveSession();
    case AppCommand::saveDocument:
      return saveDocument();
    case AppCommand::newSession:
      return newSession();
    case AppCommand::openSessionsFolder:
      return openSessionsFolder();
    case AppCommand::selectComputer:
      return selectComputer();
    case AppCommand::selectMicrophone:
      return selectMicrophone();
    case AppCommand::toggleKeepOnTop:
      return toggleKeepOnTop();
    case AppCommand::terminate:
      Q_EMIT terminationRequested();
      return;
    case AppCommand::showHistory:
      return sessions_->showHistory();
    case AppCommand::exportCurrentSession:
      return sessions_->exportCurrentSession();
    case AppCommand::openSessionFile:
      return sessions_->openSessionFile();
    case AppCommand::showSettings:
      return showSettings();
    case AppCommand::checkForUpdates:
      return information_->checkForUpdates();
    case AppCommand::showAbout:
      return information_->showAbout();
  }
}

CommandValidation AppCoordinator::validate(AppCommand command) const {
  const bool isHistoryKey = sessions_->isKeyWindow();
  const bool hasSubject = isHistoryKey ? sessions_->hasSelection() : !model_.lines().empty();
  CommandValidation validation;
  switch (command) {
    case AppCommand::saveSession:
      validation.isEnabled = !model_.lines().empty();
      break;
    case AppCommand::saveDocument:
      validation.title = isHistoryKey ? L("Save Session File…", "기록 파일 저장…")
                                      : L("Save Current Session", "현재 세션 저장");
      validation.isEnabled = hasSubject;
      break;
    case AppCommand::exportCurrentSession:
      validation.isEnabled = hasSubject;
      break;
    case AppCommand::newSession:
    case AppCommand::toggleCaptions:
    case AppCommand::selectComputer:
    case AppCommand::selectMicrophone:
      validation.isEnabled = !model_.isTransitioning();
      break;
    default:
      break;
  }
  return validation;
}

void AppCoordinator::toggleCaptions() {
  // What is being decided counts on captions that stay off until then.
  if (model_.isTransitioning() || isDeciding()) return;
  if (model_.isRunning()) {
    model_.stop();
  } else {
    showPanel();
    model_.start();
  }
}

void AppCoordinator::togglePanel() {
  captionWindow().toggle();
}

void AppCoordinator::showPanel() {
  captionWindow().show();
}

void AppCoordinator::restorePosition() {
  captionWindow().restorePosition();
}

void AppCoordinator::saveSession() {
  if (!model_.saveCurrentSession() && model_.saveError()) {
    services_.question.ask(errorQuestion(*model_.saveError()));
  }
}

void AppCoordinator::saveDocument() {
  if (sessions_->isKeyWindow()) {
    sessions_->saveHistoryFile();
  } else {
    saveSession();
  }
}

void AppCoordinator::showSettings() {
  if (!settingsWindow_) {
    settingsWindow_ = std::make_unique<SettingsWindowController>(
        model_, [this] { perform(AppCommand::openSessionsFolder); }, services_.notes);
    installMainMenu(&settingsWindow_->window());
  }
  settingsWindow_->show();
}

void AppCoordinator::openSessionsFolder() {
  try {
    services_.files.openFolder(model_.store().directory);
  } catch (const std::exception& error) {
    services_.question.ask(errorQuestion(descriptionOf(error)));
  }
}

void AppCoordinator::selectComputer() {
  model_.settings().setUseMic(false);
}

void AppCoordinator::selectMicrophone() {
  model_.settings().setUseMic(true);
}

void AppCoordinator::toggleKeepOnTop() {
  model_.settings().setKeepOnTop(!model_.settings().keepOnTop());
}

void AppCoordinator::newSession() {
  if (replacing_ || terminating_) return;
  replacing_ = true;
  startTask(this,
            [this, wasRunning = model_.isRunning()] { return decideNewSession(this, wasRunning); });
}

QCoro::Task<> AppCoordinator::decideNewSession(QPointer<AppCoordinator> self, bool wasRunning) {
  QCoro::Task<> shutdown = self->model_.shutdown();
  co_await shutdown;
  if (!self || self->ended_) co_return;
  if (self->terminating_) {
    // Asked for meanwhile: one question is enough, and quitting's is the one that counts.
    self->replacing_ = false;
    self->beginTermination(wasRunning);
    co_return;
  }
  const QString title =
      L("Save this session before starting a new one?", "새 세션을 시작하기 전에 저장할까요?");
  const bool goesOn = confirmDiscarding(self->model_, title, self->services_.question);
  if (!self || self->ended_) co_return;
  self->replacing_ = false;
  if (goesOn) {
    self->model_.newSession();
    self->sessions_->library().reload();
    self->showPanel();
  }
  if (self->terminating_) {
    // Asked for meanwhile; it waited for this decision.
    self->beginTermination(wasRunning);
  } else if (wasRunning) {
    self->model_.start();
  }
}

void AppCoordinator::prepareToTerminate(TerminationReply reply) {
  replies_.push_back(std::move(reply));
  if (terminating_) return;
  terminating_ = true;
  if (!replacing_) beginTermination(model_.isRunning());
}

void AppCoordinator::beginTermination(bool wasRunning) {
  startTask(this, [this, wasRunning] { return decideTermination(this, wasRunning); });
}

QCoro::Task<> AppCoordinator::decideTermination(QPointer<AppCoordinator> self, bool wasRunning) {
  QCoro::Task<> shutdown = self->model_.shutdown();
  co_await shutdown;
  if (!self || self->ended_) co_return;
  Q_EMIT self->terminationQuestionReached();
  const QString title =
      L("Save this session before quitting?", "종료하기 전에 이 세션을 저장할까요?");
  const bool goesOn = confirmDiscarding(self->model_, title, self->services_.question);
  if (!self || self->ended_) co_return;
  self->terminating_ = false;
  if (!goesOn && wasRunning) self->model_.start();
  const std::vector<TerminationReply> replies = std::exchange(self->replies_, {});
  for (const TerminationReply& reply : replies) reply(goesOn);
}

void AppCoordinator::endNow() {
  ended_ = true;
  model_.persistIfNeeded();
}

void AppCoordinator::observe() {
  observeLanguage();
  observeLook();
  observeApplication();
  connect(&services_.trayHost, &TrayHost::missing, this, &AppCoordinator::explainMissingStatusItem);
  connect(captionWindow_.get(), &CaptionWindowController::visibilityChanged, menuBar_.get(),
          &MenuBarController::updateMenus);
  connect(sessions_.get(), &SessionLibrary::selectionChanged, menuBar_.get(),
          &MenuBarController::updateMenus);
}

void AppCoordinator::observeLanguage() {
  connect(&Localization::shared(), &Localization::languageChanged, this, [this] {
    menuBar_->mainMenu().rebuild();
    if (settingsWindow_) settingsWindow_->updateTitle();
    sessions_->updateTitles();
    // The lists are sorted by names in the interface language.
    startTask(this, [this] { return model_.loadLanguages(); });
  });
}

void AppCoordinator::observeLook() {
  const auto apply = [this] {
    look_.set(services_.desktop.prefersHighContrast(), services_.desktop.prefersReducedMotion());
  };
  connect(&services_.desktop, &DesktopPlatform::contrastChanged, this, apply);
  connect(&services_.desktop, &DesktopPlatform::motionChanged, this, apply);
  apply();
}

void AppCoordinator::observeApplication() {
  ApplicationService& application = services_.application;
  application.onActivate = [this] {
    reopen();
  };
  application.onAction = [this](const QString& name, const QVariant& parameter) {
    if (const auto command = commandForAction(name, parameter)) perform(*command);
  };
  application.onOpen = [this](const QList<QUrl>& files) {
    // Brings an open question to the front, which has to be answered first.
    if (WindowPresentation::isModalOpen()) return reopen();
    sessions_->open(files);
  };
  using Model = CaptionViewModel;
  for (const auto signal : {&Model::isRunningChanged, &Model::isTransitioningChanged,
                            &Model::sessionChanged, &Model::saveErrorChanged}) {
    connect(&model_, signal, this, &AppCoordinator::publishActions);
  }
  for (const auto signal : {&AppSettings::useMicChanged, &AppSettings::keepOnTopChanged}) {
    connect(&model_.settings(), signal, this, &AppCoordinator::publishActions);
  }
  connect(captionWindow_.get(), &CaptionWindowController::visibilityChanged, this,
          &AppCoordinator::publishActions);
  // What can be exported depends on the window that has the keyboard.
  connect(qApp, &QGuiApplication::focusWindowChanged, this, &AppCoordinator::publishActions);
  connect(sessions_.get(), &SessionLibrary::selectionChanged, this,
          &AppCoordinator::publishActions);
  publishActions();
}

void AppCoordinator::publishActions() {
  services_.application.setActions(namedActions(
      model_, captionWindow_->isShown(), [this](AppCommand command) { return validate(command); }));
}

void AppCoordinator::explainMissingStatusItem() {
  showPanel();
  static constexpr auto kExplained = "statusItemExplained";
  if (services_.preferences.get<bool>(kExplained).value_or(false)) return;
  services_.preferences.set(kExplained, true);
  showStatusItemNotice();
}

}  // namespace velun
