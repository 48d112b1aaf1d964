// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/engine_controller.h"

#include "audio/start_failure.h"
#include "captions/caption_target.h"
#include "captions/update.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/one_shot.h"

#include <exception>
#include <utility>

namespace velun {

EngineController::EngineController(const AppSettings& settings,
                                   std::unique_ptr<SpeechRecognizing> engine)
    : settings_(settings), engine_(std::move(engine)) {
  connect(engine_.get(), &SpeechRecognizing::eventOccurred, this, &EngineController::eventOccurred);
  connect(engine_.get(), &SpeechRecognizing::tooSlow, this, &EngineController::tooSlow);
  connect(engine_.get(), &SpeechRecognizing::missingInputChanged, this,
          &EngineController::isDeviceMissingChanged);
  connect(engine_.get(), &SpeechRecognizing::isDownloadingChanged, this,
          &EngineController::reportSwitching);
  connect(&chain_, &EngineChain::becameIdle, this, [this] { setTransitioning(false); });
}

EngineController::~EngineController() {
  // Closing the chain may make the engine emit events.
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
  chain_.enqueue([self = QPointer(this)](std::stop_token stop) { return runRestart(self, stop); });
}

QCoro::Task<> EngineController::runRestart(QPointer<EngineController> self, std::stop_token stop) {
  if (stop.stop_requested()) co_return;
  QCoro::Task<> stopping = self->engine_->stop();
  co_await stopping;
  if (!self || !self->isRunning_) co_return;

  bool isStarted = false;
  std::optional<FailureEvent> failure;
  try {
    const QString localeID = self->settings_.localeID();
    const CaptionTargets targets = captionTargets(self->settings_);
    QCoro::Task<> starting = self->engine_->start(localeID, targets, stop);
    co_await starting;
    isStarted = true;
  } catch (const Cancelled&) {
    // The user turned captions off or changed a setting, which needs no message.
  } catch (const StartFailure& error) {
    failure = FailureEvent(error.errorDescription(), error.stage());
  } catch (const std::exception& error) {
    failure = FailureEvent(descriptionOf(error), FailureStage::recognition);
  }
  if (!self || isStarted) co_return;
  // A restart has replaced this one.
  if (self->isRunning_ && stop.stop_requested()) co_return;
  self->setRunning(false);
  Q_EMIT self->startFailed(failure);
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
  return chain_.enqueue([self = QPointer(this)](std::stop_token) { return runStop(self); });
}

QCoro::Task<> EngineController::runStop(QPointer<EngineController> self) {
  QCoro::Task<> stopping = self->engine_->stop();
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
