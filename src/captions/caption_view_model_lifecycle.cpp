// SPDX-License-Identifier: GPL-3.0-or-later
// Starting, stopping and switching the engine.
#include "captions/caption_view_model.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/one_shot.h"

#include <exception>

namespace velun {

void CaptionViewModel::start() {
  if (isRunning_ || isTransitioning_) return;
  setTimes(lines().empty() ? clock_.now() : session_.startedAt, std::nullopt);
  assign(isRunning_, true, &CaptionViewModel::isRunningChanged);
  updateTranslation();
  restart();
}

void CaptionViewModel::restart() {
  if (!isRunning_) return;
  assign(isTransitioning_, true, &CaptionViewModel::isTransitioningChanged);
  engineChain_.enqueue([self = life_.weak(), recognition = recognition_](std::stop_token stop) {
    return runRestart(self, recognition, stop);
  });
}

QCoro::Task<> CaptionViewModel::runRestart(std::weak_ptr<CaptionViewModel> self,
                                           std::shared_ptr<SpeechRecognizing> recognition,
                                           std::stop_token stop) {
  if (stop.stop_requested()) co_return;
  QCoro::Task<> stopping = recognition->stop();
  co_await stopping;
  CaptionViewModel* model = self.lock().get();
  if (!model || !model->isRunning_) co_return;

  bool isStarted = false;
  std::optional<QString> description;
  try {
    const QString localeID = model->settings_.localeID();
    const bool useMic = model->settings_.useMic();
    QCoro::Task<> starting = recognition->start(localeID, useMic, stop);
    co_await starting;
    isStarted = true;
  } catch (const Cancelled&) {
    // Someone asked for it, so there is nothing to tell.
  } catch (const std::exception& error) {
    description = descriptionOf(error);
  }
  model = self.lock().get();
  if (model) {
    if (!isStarted) model->startFailed(description);
  } else if (isStarted) {
    QCoro::Task<> abandoning = recognition->stop();
    co_await abandoning;
  }
}

void CaptionViewModel::startFailed(const std::optional<QString>& description) {
  assign(isRunning_, false, &CaptionViewModel::isRunningChanged);
  assign(status_, description, &CaptionViewModel::statusChanged);
}

void CaptionViewModel::stop() {
  if (!isRunning_ || isTransitioning_) return;
  beginShutdown();
}

QCoro::Task<> CaptionViewModel::shutdown() {
  const OneShot<bool> stopped = beginShutdown();
  co_await stopped;
}

OneShot<bool> CaptionViewModel::beginShutdown() {
  assign(isRunning_, false, &CaptionViewModel::isRunningChanged);
  assign(isTransitioning_, true, &CaptionViewModel::isTransitioningChanged);
  engineChain_.cancelAll();
  return engineChain_.enqueue([self = life_.weak(), recognition = recognition_](std::stop_token) {
    return runStop(self, recognition);
  });
}

QCoro::Task<> CaptionViewModel::runStop(std::weak_ptr<CaptionViewModel> self,
                                        std::shared_ptr<SpeechRecognizing> recognition) {
  QCoro::Task<> stopping = recognition->stop();
  co_await stopping;
  CaptionViewModel* const model = self.lock().get();
  if (model) model->stopped();
}

void CaptionViewModel::stopped() {
  assign(volatileText_, QString(), &CaptionViewModel::volatileTextChanged);
  if (!lines().empty()) setTimes(session_.startedAt, clock_.now());
  persist(SessionStore::Flush::yes);
}

void CaptionViewModel::setTimes(Instant startedAt, const std::optional<Instant>& endedAt) {
  if (session_.startedAt == startedAt && session_.endedAt == endedAt) return;
  session_.startedAt = startedAt;
  session_.endedAt = endedAt;
  Q_EMIT sessionChanged();
}

void CaptionViewModel::observeSettings() {
  connect(&settings_, &AppSettings::changed, this, &CaptionViewModel::settingsChanged);
}

void CaptionViewModel::settingsChanged(AppSettings::Change change) {
  using Change = AppSettings::Change;
  if (change == Change::input || change == Change::sourceLanguage) restart();
  if (change != Change::input) updateTranslation();
}

void CaptionViewModel::updateTranslation() {
  clear(translationStatus_, &CaptionViewModel::translationStatusChanged);
  translator_.configure(settings_.translate(), isRunning_ || !lines().empty(), settings_.localeID(),
                        settings_.targetID());
}

}  // namespace velun
