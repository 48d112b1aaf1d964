// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/app_delegate.h"
#include "captions/model_fixture.h"
#include "platform/updates/update_checker.h"
#include "support/fake_desktop_platform.h"
#include "support/memory_preferences.h"
#include "support/scripted_application_service.h"
#include "support/scripted_file_manager.h"
#include "support/scripted_question.h"
#include "support/scripted_source.h"
#include "support/scripted_tray_host.h"
#include "ui/caption/caption_window_controller.h"

#include <QPrinter>

namespace velun::test {

/// The launched program with scripted services and real windows.
struct AppStage : ModelFixture {
  explicit AppStage(const std::function<void(AppSettings&)>& prepare = {}) : ModelFixture(prepare) {
    launch();
  }

  /// Launches the program, after ending it if it was launched before.
  void launch() {
    delegate.reset();
    delegate = std::make_unique<AppDelegate>(*model, services());
    delegate->applicationDidFinishLaunching();
    settle();
  }

  AppServices services() {
    return {.preferences = preferences,
            .desktop = desktop,
            .translation = translation,
            .trayHost = tray,
            .application = application,
            .files = fileManager,
            .updater = updater,
            .question = question,
            .clock = clock,
            .panels = {.open =
                           [this](const OpenPanelRequest& request) {
                             openRequests.push_back(request);
                             return chosenFile;
                           },
                       .save =
                           [this](const SavePanelRequest& request) {
                             saveRequests.push_back(request);
                             return chosenFile;
                           }},
            .trash =
                [this](const QUrl& url) {
                  if (trashFailure) throw Failure(*trashFailure);
                  QFile::remove(url.toLocalFile());
                  trashed.append(url);
                },
            .askTitle =
                [this](const QString& title) {
                  askedTitles.append(title);
                  return chosenTitle;
                },
            .askCorrection =
                [this](const Line& line) {
                  correctedLines.append(line.text);
                  if (beforeCorrection) beforeCorrection();
                  return correction;
                },
            .askPrinter =
                [this](const QString& title) {
                  printedTitles.append(title);
                  return printer;
                },
            .recordingSource =
                [this](const QString&, const QString&, Instant) {
                  auto source = std::make_unique<ScriptedSource>();
                  recording = source.get();
                  return source;
                },
            .credits = {}};
  }

  AppCoordinator& coordinator() { return delegate->coordinator(); }
  bool isPanelShown() { return coordinator().captionWindow().isShown(); }

  QAction& action(AppCommand command) { return coordinator().commands().action(command); }

  /// Triggers the command as a menu or another program does.
  void perform(AppCommand command) {
    action(command).trigger();
    settleSaving();
  }

  /// Requests to quit; the decision is appended to `replies`.
  void requestQuit() {
    coordinator().ending().prepareToTerminate(
        [this](bool shouldTerminate) { replies.push_back(shouldTerminate); });
    settleSaving();
  }

  /// Turns captions on and delivers one line.
  void startWithLine() {
    perform(AppCommand::toggleCaptions);
    final("One line.");
  }

  MemoryPreferences preferences;
  FakeDesktopPlatform desktop;
  ScriptedTrayHost tray;
  ScriptedApplicationService application;
  ScriptedFileManager fileManager;
  UpdateChecker updater{"1.0", true, nullptr};
  ScriptedQuestion question;
  std::vector<OpenPanelRequest> openRequests;
  std::vector<SavePanelRequest> saveRequests;
  std::optional<QUrl> chosenFile;
  QStringList askedTitles;
  std::optional<QString> chosenTitle;
  /// The texts of the lines whose right text was asked for, and the answer.
  QStringList correctedLines;
  std::optional<QString> correction;
  std::function<void()> beforeCorrection;
  /// The titles of the jobs for which a printer was asked for, and the answer.
  QStringList printedTitles;
  std::shared_ptr<QPrinter> printer;
  /// The recording that is captioned or was captioned last.
  QPointer<ScriptedSource> recording;
  std::optional<QString> trashFailure;
  QList<QUrl> trashed;
  std::vector<bool> replies;
  std::unique_ptr<AppDelegate> delegate;
};

/// The buttons of the question about unsaved lines.
enum DiscardAnswer { saveSession, discardSession, cancelDiscarding };

}  // namespace velun::test
