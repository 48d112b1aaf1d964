// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/model_fixture.h"
#include "support/fake_desktop_platform.h"
#include "support/memory_preferences.h"
#include "ui/caption/caption_panel.h"
#include "ui/caption/caption_view.h"
#include "ui/caption/caption_window_controller.h"

namespace velun::test {

/// A caption panel over a scripted model, on a desktop that is faked unless one is given, with a
/// log of the actions it asked for.
struct PanelStage : ModelFixture {
  explicit PanelStage(const std::function<void(AppSettings&)>& prepare = {},
                      DesktopPlatform* realDesktop = nullptr, PreferenceStore* keptFrames = nullptr)
      : ModelFixture(prepare) {
    controller = std::make_unique<CaptionWindowController>(
        *model, actions(),
        CaptionWindowServices{.desktop = realDesktop ? *realDesktop : desktop,
                              .translation = translation,
                              .frames = keptFrames ? *keptFrames : frames,
                              .clock = clock});
    view = controller->panel().findChild<CaptionView*>();
  }

  CaptionActions actions() {
    const auto log = [this](const char* name) {
      return [this, name] {
        asked << name;
      };
    };
    CaptionActions actions;
    actions.toggleCaptions = [this] {
      asked << "toggleCaptions";
      model->isRunning() ? model->stop() : model->start();
    };
    actions.hide = [this] {
      controller->toggle();
    };
    actions.saveSession = [this] {
      model->saveCurrentSession();
    };
    actions.showHistory = log("showHistory");
    actions.exportSession = log("exportSession");
    actions.newSession = log("newSession");
    actions.showSettings = log("showSettings");
    actions.setHeaderVisible = [this](bool visible) {
      asked << (visible ? "header on" : "header off");
      controller->setHeader(visible, animatesHeader);
    };
    return actions;
  }

  CaptionPanel& panel() const { return controller->panel(); }

  FakeDesktopPlatform desktop;
  MemoryPreferences frames;
  QStringList asked;
  bool animatesHeader = false;
  std::unique_ptr<CaptionWindowController> controller;
  CaptionView* view = nullptr;
};

}  // namespace velun::test
