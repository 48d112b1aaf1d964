// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/model_fixture.h"
#include "support/fake_desktop_platform.h"
#include "support/memory_preferences.h"
#include "ui/caption/caption_panel.h"
#include "ui/caption/caption_view.h"
#include "ui/caption/caption_window_controller.h"
#include "ui/common/access_style.h"
#include "ui/common/app_commands.h"

namespace velun::test {

/// A caption panel over a scripted model, on a fake desktop by default. Commands
/// on the engine, the panel and the file are carried out, and the names of all others are logged.
struct PanelStage : ModelFixture {
  explicit PanelStage(const std::function<void(AppSettings&)>& prepare = {},
                      DesktopPlatform* realDesktop = nullptr, PreferenceStore* keptFrames = nullptr,
                      BetterCaptions* better = nullptr, SmallerRecognizer* smaller = nullptr)
      : ModelFixture(prepare) {
    QObject::connect(&commands, &AppCommands::triggered, &commands,
                     [this](AppCommand command) { perform(command); });
    controller = std::make_unique<CaptionWindowController>(
        *model, commands,
        CaptionWindowServices{.desktop = realDesktop ? *realDesktop : desktop,
                              .translation = translation,
                              .frames = keptFrames ? *keptFrames : frames,
                              .clock = clock,
                              .betterCaptions = better,
                              .smallerRecognizer = smaller});
    view = controller->panel().findChild<CaptionView*>();
    panel().setStyle(&still);
  }

  /// Enables the animation of the header; it is off by default.
  void animateHeader() const { panel().setStyle(nullptr); }

  void perform(AppCommand command) {
    switch (command) {
      case AppCommand::toggleCaptions:
        model->isRunning() ? model->stop() : model->start();
        break;
      case AppCommand::togglePanel:
        return controller->toggle();
      case AppCommand::saveSession:
        model->saveCurrentSession();
        return;
      case AppCommand::selectComputer:
      case AppCommand::selectMicrophone:
        return settings.setUseMic(command == AppCommand::selectMicrophone);
      case AppCommand::selectBoth:
        return settings.setInputChoice(InputChoice::both);
      default:
        break;
    }
    asked << commands.action(command).objectName();
  }

  CaptionPanel& panel() const { return controller->panel(); }

  /// Shows the panel, then one of the program's other windows in its place. The desktop's calls are
  /// those for the window.
  void showBeneath(QWidget& window) {
    controller->show();
    window.setGeometry(panel().geometry());
    controller->keepReadable(window);
    desktop.calls.clear();
    window.show();
  }

  FakeDesktopPlatform desktop;
  MemoryPreferences frames;
  QStringList asked;
  AccessStyle still{"fusion", AccessStyle::Outlines::none, true};
  bool hasStatusIcons = true;
  std::unique_ptr<CaptionWindowController> controller;
  AppCommands commands{*model, [this] {
                         return WindowState{.isPanelVisible = controller && controller->isShown(),
                                            .hasStatusIcons = hasStatusIcons};
                       }};
  CaptionView* view = nullptr;
};

}  // namespace velun::test
