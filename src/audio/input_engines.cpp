// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/input_engines.h"

#include "audio/audio_input_kind.h"
#include "audio/start_failure.h"
#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/main_task.h"

#include <algorithm>
#include <exception>
#include <QPointer>
#include <QStringList>
#include <utility>

namespace velun {

namespace {

QString failureText(AudioInput input, const QString& reason) {
  return (input == AudioInput::microphone
              ? L("The microphone is not captioned: %1", "마이크 자막을 만들지 못합니다: %1")
              : L("The computer’s sound is not captioned: %1",
                  "컴퓨터 소리의 자막을 만들지 못합니다: %1"))
      .arg(reason);
}

}  // namespace

InputEngines::InputEngines(std::unique_ptr<SpeechRecognizing> first,
                           std::unique_ptr<SpeechRecognizing> second,
                           std::shared_ptr<EchoCanceller> canceller, Clock& clock)
    : canceller_(std::move(canceller)), echo_(clock) {
  connect(&echo_, &EchoRemoval::passed, this, &SpeechRecognizing::eventOccurred);
  parts_[0].engine = std::move(first);
  parts_[1].engine = std::move(second);
  for (Part& part : parts_) follow(part);
}

InputEngines::~InputEngines() {
  // Their destructors may emit.
  for (const Part& part : parts_) part.engine->disconnect(this);
}

void InputEngines::follow(Part& part) {
  SpeechRecognizing* engine = part.engine.get();
  connect(engine, &SpeechRecognizing::eventOccurred, this,
          [this, &part](const SpeechRecognitionEvent& event) { handle(part, event); });
  connect(engine, &SpeechRecognizing::isDownloadingChanged, this,
          &SpeechRecognizing::isDownloadingChanged);
  connect(engine, &SpeechRecognizing::missingInputChanged, this,
          &SpeechRecognizing::missingInputChanged);
  connect(engine, &SpeechRecognizing::tooSlow, this, &SpeechRecognizing::tooSlow);
}

QCoro::Task<> InputEngines::start(QString localeID, CaptionTargets targets, std::stop_token stop) {
  const QPointer<InputEngines> self(this);
  const std::vector<AudioTarget> all = targets.all();
  hasTwo_ = filtersEcho_ = all.size() > 1;
  isStarting_ = true;
  ++run_;
  echo_.reset();
  shownStatus_.reset();
  canceller_->stop();
  if (hasTwo_) {
    canceller_->start();
    Q_EMIT eventOccurred(StatusEvent{});
  }
  std::exception_ptr firstError;
  for (std::size_t i = 0; i < all.size(); ++i) {
    Part& part = parts_[i];
    part.input = inputOf(all[i].kind);
    part.isOn = true;
    part.status.reset();
    part.failure.reset();
    std::exception_ptr error;
    try {
      const CaptionTargets one(all[i]);
      QCoro::Task<> starting = part.engine->start(localeID, one, stop);
      co_await starting;
    } catch (...) {
      error = std::current_exception();
    }
    if (!self) throw Cancelled();
    if (error) startFailed(part, error);
    if (error && !firstError) firstError = error;
    if (stop.stop_requested()) break;
  }
  isStarting_ = false;
  const bool isCancelled = stop.stop_requested();
  if (!isCancelled && isAnyOn()) {
    updateStatus();
    co_return;
  }
  const std::optional<FailureEvent> failure = parts_[0].failure;
  if (hasTwo_) {
    QCoro::Task<> stopping = this->stop();
    co_await stopping;
  }
  if (firstError) std::rethrow_exception(firstError);
  if (isCancelled || !failure) throw Cancelled();
  throw StartFailure(failure->message, failure->stage);
}

void InputEngines::startFailed(Part& part, const std::exception_ptr& error) {
  part.isOn = false;
  try {
    std::rethrow_exception(error);
  } catch (const Cancelled&) {
    // The run ends.
  } catch (const StartFailure& failure) {
    part.failure = FailureEvent{failure.errorDescription(), failure.stage()};
  } catch (const std::exception& failure) {
    part.failure = FailureEvent{descriptionOf(failure), FailureStage::recognition};
  }
}

QCoro::Task<> InputEngines::stop() {
  const QPointer<InputEngines> self(this);
  const int run = ++run_;
  const bool stopsSecond = std::exchange(hasTwo_, false);
  for (Part& part : parts_) {
    part.isOn = false;
    part.status.reset();
    part.failure.reset();
  }
  if (std::exchange(shownStatus_, std::nullopt)) Q_EMIT eventOccurred(StatusEvent{});
  // Both at once: each may need its time for the last words.
  QCoro::Task<> first = parts_[0].engine->stop();
  if (stopsSecond) {
    QCoro::Task<> second = parts_[1].engine->stop();
    co_await second;
  }
  co_await first;
  if (!self) co_return;
  echo_.release();
  if (run == run_) canceller_->stop();
}

void InputEngines::handle(Part& part, const SpeechRecognitionEvent& event) {
  const auto* failure = std::get_if<FailureEvent>(&event);
  if (const auto* status = std::get_if<StatusEvent>(&event); status && hasTwo_) {
    if (part.isOn) part.status = status->text;
    updateStatus();
  } else if (failure && hasTwo_) {
    failed(part, *failure);
  } else if (filtersEcho_) {
    echo_.take(event);
  } else {
    Q_EMIT eventOccurred(event);
  }
}

void InputEngines::failed(Part& part, const FailureEvent& failure) {
  if (!part.isOn) return;
  part.isOn = false;
  part.status.reset();
  part.failure = failure;
  if (!isAnyOn() && !isStarting_) {
    Q_EMIT eventOccurred(failure);
    return;
  }
  Q_EMIT eventOccurred(DraftEvent{{}, part.input});
  updateStatus();
  const std::size_t index = &part == &parts_[0] ? 0 : 1;
  startTask(this, [this, index, run = run_] { return stopFailed(index, run); });
}

QCoro::Task<> InputEngines::stopFailed(std::size_t index, int run) {
  // A stop of both has begun meanwhile.
  if (run != run_) co_return;
  QCoro::Task<> stopping = parts_[index].engine->stop();
  co_await stopping;
}

bool InputEngines::isAnyOn() const {
  return std::ranges::any_of(parts_, &Part::isOn);
}

bool InputEngines::isDownloading() const {
  return std::ranges::any_of(parts_, [](const Part& part) { return part.engine->isDownloading(); });
}

std::optional<AudioInput> InputEngines::missingInput() const {
  for (const Part& part : parts_) {
    if (const auto missing = part.engine->missingInput()) return missing;
  }
  return std::nullopt;
}

std::vector<float> InputEngines::meterBands() const {
  std::vector<float> bands = parts_[0].engine->meterBands();
  const std::vector<float> others = parts_[1].engine->meterBands();
  if (others.size() != bands.size()) return bands.empty() ? others : bands;
  std::ranges::transform(bands, others, bands.begin(),
                         [](float a, float b) { return std::max(a, b); });
  return bands;
}

void InputEngines::updateStatus() {
  if (!hasTwo_) return;
  QStringList texts;
  for (const Part& part : parts_) {
    if (part.failure) texts += failureText(part.input, part.failure->message);
  }
  for (const Part& part : parts_) {
    if (part.status && !texts.contains(*part.status)) texts += *part.status;
  }
  const auto status = texts.isEmpty() ? std::nullopt : std::optional(texts.join(QLatin1Char('\n')));
  if (std::exchange(shownStatus_, status) == status) return;
  Q_EMIT eventOccurred(StatusEvent{status});
}

}  // namespace velun
