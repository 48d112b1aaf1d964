// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/engine_controller.h"

#include "captions/update.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/one_shot.h"
#include "settings/app_settings.h"

#include <exception>
#include <utility>

namespace velun {

EngineController::EngineController(const AppSettings& settings,
                                   std::unique_ptr<SpeechRecognizing> engine, QObject* parent)
    : QObject(parent), settings_(settings), engine_(std::move(engine)) {
  connect(engine_.get(), &SpeechRecognizing::eventOccurred, this, &EngineController::eventOccurred);
  connect(engine_.get(), &SpeechRecognizing::isDownloadingChanged, this,
          &EngineController::reportSwitching);
  connect(&chain_, &EngineChain::becameIdle, this, [this] { setTransitioning(false); });
}

EngineController::~EngineController() {
  // The engine may outlive us in a running operation; closing the chain may make it emit events.
  engine_->disconnect(this);
}

bool EngineController::isSwitching() const {
  return isTransitioning_ && !(isRunning_ && engine_->isDownloading());
}

void EngineController::start() {
  if (!isStopped()) return;
  setRunning(true);
  restart();
}

void EngineController::restart() {
  if (!isRunning_) return;
  if (engine_->isDownloading()) chain_.cancelAll();
  setTransitioning(true);
  chain_.enqueue([self = QPointer(this), engine = engine_](std::stop_token stop) {
    return runRestart(self, engine, stop);
  });
}

QCoro::Task<> EngineController::runRestart(QPointer<EngineController> self,
                                           std::shared_ptr<SpeechRecognizing> engine,
                                           std::stop_token stop) {
  if (stop.stop_requested()) co_return;
  QCoro::Task<> stopping = engine->stop();
  co_await stopping;
  if (!self || !self->isRunning_) co_return;

  bool isStarted = false;
  std::optional<QString> description;
  try {
    const QString localeID = self->settings_.localeID();
    const bool useMic = self->settings_.useMic();
    QCoro::Task<> starting = engine->start(localeID, useMic, stop);
    co_await starting;
    isStarted = true;
  } catch (const Cancelled&) {
    // The user turned captions off or changed a setting, which needs no message.
  } catch (const std::exception& error) {
    description = descriptionOf(error);
  }
  if (!self) {
    if (!isStarted) co_return;
    QCoro::Task<> abandoning = engine->stop();
    co_await abandoning;
  } else if (!isStarted && !(self->isRunning_ && stop.stop_requested())) {
    // Otherwise a restart has replaced this one.
    self->setRunning(false);
    Q_EMIT self->startFailed(description);
  }
}

void EngineController::stop() {
  if (isRunning_ && !isSwitching()) beginShutdown();
}

QCoro::Task<> EngineController::shutdown() {
  const OneShot<bool> ended = beginShutdown();
  co_await ended;
}

OneShot<bool> EngineController::beginShutdown() {
  setRunning(false);
  setTransitioning(true);
  chain_.cancelAll();
  return chain_.enqueue(
      [self = QPointer(this), engine = engine_](std::stop_token) { return runStop(self, engine); });
}

QCoro::Task<> EngineController::runStop(QPointer<EngineController> self,
                                        std::shared_ptr<SpeechRecognizing> engine) {
  QCoro::Task<> stopping = engine->stop();
  co_await stopping;
  if (self) Q_EMIT self->stopped();
}

std::vector<float> EngineController::meterBands() const {
  return isRunning_ ? engine_->meterBands() : std::vector<float>();
}

void EngineController::setRunning(bool isRunning) {
  if (update(isRunning_, isRunning)) Q_EMIT isRunningChanged();
  reportSwitching();
}

void EngineController::setTransitioning(bool isTransitioning) {
  if (update(isTransitioning_, isTransitioning)) Q_EMIT isTransitioningChanged();
  reportSwitching();
}

void EngineController::reportSwitching() {
  if (update(reportedSwitching_, isSwitching())) Q_EMIT isSwitchingChanged();
}

}  // namespace velun
