// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/live_source.h"

#include "platform/foundation/failure.h"
#include "platform/foundation/main_task.h"

#include <utility>

namespace velun {

LiveSource::LiveSource(std::unique_ptr<SpeechRecognizing> engine, QString localeID,
                       CaptionTargets targets)
    : engine_(std::move(engine)), localeID_(std::move(localeID)), targets_(std::move(targets)) {
  connect(engine_.get(), &SpeechRecognizing::eventOccurred, this,
          [this](const SpeechRecognitionEvent& event) {
            if (const auto* failure = std::get_if<FailureEvent>(&event)) {
              error_ = failure->message;
              stop();
            } else {
              Q_EMIT eventOccurred(event);
            }
          });
}

void LiveSource::start() {
  startTask(this, [this] { return run(this); });
}

QCoro::Task<> LiveSource::run(QPointer<LiveSource> self) {
  std::optional<QString> error;
  try {
    QCoro::Task<> starting =
        self->engine_->start(self->localeID_, self->targets_, self->stop_.get_token());
    co_await starting;
  } catch (const Cancelled&) {
    // `stop` tells the end.
  } catch (const std::exception& failure) {
    error = descriptionOf(failure);
  }
  if (!self || !error || self->isStopping_) co_return;
  self->isStopping_ = true;
  Q_EMIT self->ended(error);
}

void LiveSource::stop() {
  if (std::exchange(isStopping_, true)) return;
  stop_.request_stop();
  startTask(this, [this] { return end(this); });
}

QCoro::Task<> LiveSource::end(QPointer<LiveSource> self) {
  QCoro::Task<> stopping = self->engine_->stop();
  co_await stopping;
  if (self) Q_EMIT self->ended(self->error_);
}

}  // namespace velun
