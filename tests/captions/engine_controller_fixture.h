// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/engine_controller.h"
#include "settings/app_settings.h"
#include "support/scripted_recognizer.h"
#include "support/settle.h"

#include <memory>
#include <utility>
#include <vector>

namespace velun::test {

/// A controller of a scripted engine, with a list of the signals that it emitted.
struct EngineControllerFixture {
  using Script = ScriptedRecognizer::Script;

  EngineControllerFixture() {
    auto owned = std::make_unique<ScriptedRecognizer>(engine);
    recognizer = owned.get();
    controller = std::make_unique<EngineController>(settings, std::move(owned));
    EngineController* const observed = controller.get();
    const auto log = [this, observed](void (EngineController::*signal)(), const char* name) {
      QObject::connect(observed, signal, [this, name] { signalled.append(name); });
    };
    log(&EngineController::isRunningChanged, "isRunning");
    log(&EngineController::isTransitioningChanged, "isTransitioning");
    log(&EngineController::isSwitchingChanged, "isSwitching");
    log(&EngineController::stopped, "stopped");
    QObject::connect(observed, &EngineController::eventOccurred,
                     [this] { signalled.append("event"); });
    QObject::connect(observed, &EngineController::startFailed,
                     [this](const std::optional<FailureEvent>& failure) {
                       const QString text = failure ? failure->message : "cancelled";
                       signalled.append("start failed: " + text);
                     });
    QObject::connect(&settings, &AppSettings::inputChoiceChanged, observed,
                     &EngineController::restart);
  }

  void start() {
    controller->start();
    settle();
  }
  void startDownload() {
    engine->holdsStarts = true;
    engine->downloads = true;
    start();
  }
  void stop() {
    controller->stop();
    settle();
  }
  void shutdown() {
    tasks.push_back(controller->shutdown());
    settle();
  }

  QStringList takeSignals() { return std::exchange(signalled, {}); }

  AppSettings settings;
  std::shared_ptr<Script> engine = std::make_shared<Script>();
  ScriptedRecognizer* recognizer = nullptr;
  QStringList signalled;
  std::vector<QCoro::Task<>> tasks;
  std::unique_ptr<EngineController> controller;
};

}  // namespace velun::test
