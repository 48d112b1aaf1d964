// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_source.h"

#include "platform/audio/linux/wanted_stream.h"
#include "platform/foundation/failure.h"

#include <algorithm>
#include <cmath>
#include <QLoggingCategory>
#include <QPointer>
#include <utility>

namespace velun {

using namespace std::chrono_literals;

namespace {

Q_LOGGING_CATEGORY(soundLog, "velun.sound", QtCriticalMsg)

// PipeWire answers within milliseconds; on a busy machine it may take some seconds.
constexpr auto kStartTimeout = 5000ms;
// A starting session manager chooses the default devices within this time.
constexpr auto kSessionStartTimeout = 1000ms;
constexpr auto kDefaultDeviceTimeout = 300ms;

constexpr auto kReconnectInterval = 500ms;
// A restart of the session manager takes less than this; only a longer absence is reported.
constexpr auto kSessionRestartTimeout = 1500ms;
// Linking takes milliseconds. A stream that is not linked to its device after this time is
// recreated, with growing delays: a session manager does not move a stream while its device is
// idle.
constexpr auto kMinRelinkDelay = 1000ms;
constexpr auto kMaxRelinkDelay = 30000ms;

}  // namespace

PipeWireSource::PipeWireSource(AudioTarget target, Clock& clock, PipeWireTeardown& teardown,
                               std::chrono::milliseconds wakefulness)
    : target_(std::move(target)), clock_(clock), teardown_(teardown), wakefulness_(wakefulness) {}

PipeWireSource::~PipeWireSource() {
  stop();
}

QCoro::Task<> PipeWireSource::start(Handler handler) {
  begin(std::move(handler));
  const OneShot<std::monostate> started = started_;
  co_await started;
}

void PipeWireSource::begin(Handler handler) {
  handler_ = std::move(handler);
  phase_ = Phase::starting;
  int status = 0;
  const bool isInput = target_.kind == AudioTarget::Kind::input;
  auto loop = PipeWireLoop::start(isInput ? "Microphone" : "SystemAudio", &status);
  if (!loop) return failStart(problemOf(status), status);
  capture_ = std::make_unique<PipeWireCapture>(std::move(loop));
  {
    const PipeWireLoop::Lock lock(*capture_->loop);
    capture_->connection = PipeWireConnection::open(*capture_->loop, &status);
  }
  if (!capture_->connection) return failStart(problemOf(status), status);
  connect(capture_->loop.get(), &PipeWireLoop::changed, this,
          [this] { review(&PipeWireSource::reviewPhase); });
  scheduleReview(&startTimeout_, kStartTimeout, &PipeWireSource::failWithoutAnswer);
}

void PipeWireSource::failStart(CaptureProblem problem, int status) {
  qCWarning(soundLog, "The capture cannot be started: problem %d, status %d", int(problem), status);
  started_.fail(std::make_exception_ptr(Failure(describe(problem, target_.kind))));
  stop();
}

void PipeWireSource::stop() {
  if (phase_ == Phase::starting) started_.fail(std::make_exception_ptr(Cancelled()));
  phase_ = Phase::stopped;
  isDeviceMissing_ = false;
  interruptedSince_.reset();
  for (auto* call : {&startTimeout_, &deviceTimeout_, &reconnectCall_, &sessionTimeout_,
                     &relinkCall_, &suspendCall_}) {
    call->reset();
  }
  if (capture_) teardown_.end(std::move(capture_));
}

void PipeWireSource::review(Report (PipeWireSource::*action)()) {
  Report report;
  {
    const PipeWireLoop::Lock lock(*capture_->loop);
    report = (this->*action)();
  }
  // The last statement, because the report may destroy this object.
  if (report) report();
}

void PipeWireSource::scheduleReview(std::unique_ptr<ScheduledCall>* call,
                                    std::chrono::milliseconds delay,
                                    Report (PipeWireSource::*action)()) {
  *call = clock_.callAfter(delay, [this, call, action] {
    call->reset();
    review(action);
  });
}

/// Compares the PipeWire objects with what they should be.
PipeWireSource::Report PipeWireSource::reviewPhase() {
  return phase_ == Phase::starting ? reviewStart() : reviewConnection();
}

PipeWireSource::Report PipeWireSource::reviewStart() {
  const PipeWireConnection& connection = *capture_->connection;
  if (connection.isLost()) return startFailure(CaptureProblem::notRunning);
  if (!connection.isComplete()) return {};
  if (!isTargetThere()) {
    if (!deviceTimeout_) {
      const bool hasSession = connection.graph().hasSession();
      scheduleReview(&deviceTimeout_, hasSession ? kDefaultDeviceTimeout : kSessionStartTimeout,
                     &PipeWireSource::startWithoutDevice);
    }
    return {};
  }
  deviceTimeout_.reset();
  if (!capture_->stream) {
    sounds_.begin(clock_.monotonicSeconds());
    if (const int status = makeStream()) return startFailure(CaptureProblem::refused, status);
  }
  if (capture_->stream->isDead()) return startFailure(CaptureProblem::refused);
  if (!capture_->stream->isReady()) return {};
  return becomeRunning();
}

PipeWireSource::Report PipeWireSource::becomeRunning() {
  startTimeout_.reset();
  phase_ = Phase::running;
  relinkDelay_ = kMinRelinkDelay;
  started_.complete({});
  return reviewConnection();
}

PipeWireSource::Report PipeWireSource::startFailure(CaptureProblem problem, int status) {
  return [this, problem, status] {
    failStart(problem, status);
  };
}

PipeWireSource::Report PipeWireSource::startWithoutDevice() {
  if (!capture_->connection->graph().hasSession()) {
    return startFailure(CaptureProblem::noSessionManager);
  }
  return target_.id.isEmpty() ? startFailure(CaptureProblem::noDevice) : becomeRunning();
}

PipeWireSource::Report PipeWireSource::failWithoutAnswer() {
  return startFailure(CaptureProblem::notAnswering);
}

PipeWireSource::Report PipeWireSource::reviewConnection() {
  if (capture_->connection && capture_->connection->isLost()) capture_->disconnect();
  if (!capture_->connection) return beginInterruption();
  if (!capture_->connection->graph().hasSession()) {
    if (!interruptedSince_ && !sessionTimeout_) {
      scheduleReview(&sessionTimeout_, kSessionRestartTimeout,
                     &PipeWireSource::beginInterruptionWithoutSession);
    }
    return {};
  }
  sessionTimeout_.reset();
  return reviewStream();
}

PipeWireSource::Report PipeWireSource::reviewStream() {
  if (isStreamStale()) capture_->endStreams();
  // Without a chosen device the session manager is still starting, and it does not link streams
  // that were created before it is ready.
  if (!capture_->stream && isTargetThere()) makeStream();
  updateLinks();

  if (isStreamLinked() || !isTargetThere()) {
    relinkCall_.reset();
    relinkDelay_ = kMinRelinkDelay;
  } else if (!relinkCall_) {
    scheduleReview(&relinkCall_, relinkDelay_, &PipeWireSource::relink);
  }
  updateWakefulness();
  // A missing device is not an interruption; `reconnect` ends one.
  if (Report report = reviewDevice()) return report;
  return isStreamLinked() ? endInterruption() : Report();
}

PipeWireSource::Report PipeWireSource::reviewDevice() {
  const bool isMissing = !target_.id.isEmpty() && !isTargetThere();
  if (std::exchange(isDeviceMissing_, isMissing) == isMissing) return {};
  return [this, isMissing, self = QPointer(this)] {
    isMissing ? Q_EMIT deviceMissing() : Q_EMIT deviceFound();
    // What else has changed; a slot may have stopped or destroyed the source.
    if (self && phase_ == Phase::running) review(&PipeWireSource::reviewPhase);
  };
}

/// Links programs that have begun to play.
void PipeWireSource::updateLinks() {
  if (!target_.isProgram() || !capture_->stream) return;
  const auto wanted =
      linksToPrograms(target_, capture_->stream->nodeID(), capture_->connection->graph());
  capture_->links.update(wanted, *capture_->connection);
}

void PipeWireSource::updateWakefulness() {
  const double quiet = clock_.monotonicSeconds() - sounds_.lastSound();
  const auto left = wakefulness_ - std::chrono::milliseconds(std::lround(quiet * 1000));
  const bool isAwake = capture_->stream && target_.kind != AudioTarget::Kind::input && left > 0ms;
  keepAwake(isAwake);
  if (!isAwake) {
    suspendCall_.reset();
  } else if (!suspendCall_) {
    scheduleReview(&suspendCall_, left, &PipeWireSource::allowSuspend);
  }
}

void PipeWireSource::keepAwake(bool isAwake) {
  if (target_.isProgram()) {
    // What a program said last is only finished by the silence after it, also when it has ended.
    if (capture_->stream) capture_->stream->keepAwake(isAwake);
  } else if (!isAwake) {
    capture_->awakeStream.reset();
  } else if (!capture_->awakeStream) {
    PipeWireStreamOptions options = streamOptions_;
    options.keepsAwake = true;
    capture_->awakeStream =
        std::make_unique<PipeWireStream>(*capture_->loop, *capture_->connection, options, nullptr);
  }
}

PipeWireSource::Report PipeWireSource::allowSuspend() {
  if (capture_->connection) updateWakefulness();
  return {};
}

PipeWireSource::Report PipeWireSource::beginInterruption() {
  if (interruptedSince_) return {};
  interruptedSince_ = clock_.monotonicSeconds();
  scheduleReview(&reconnectCall_, kReconnectInterval, &PipeWireSource::reconnect);
  return [this] {
    Q_EMIT interrupted();
  };
}

PipeWireSource::Report PipeWireSource::beginInterruptionWithoutSession() {
  const bool isMissing = capture_->connection && !capture_->connection->graph().hasSession();
  return isMissing ? beginInterruption() : Report();
}

PipeWireSource::Report PipeWireSource::endInterruption() {
  if (!interruptedSince_) return {};
  interruptedSince_.reset();
  reconnectCall_.reset();
  return [this] {
    Q_EMIT resumed();
  };
}

PipeWireSource::Report PipeWireSource::reconnect() {
  const double waited = clock_.monotonicSeconds() - *interruptedSince_;
  if (waited >= double(kReconnectTimeout.count())) {
    return [this] {
      stop();
      Q_EMIT failed(describe(CaptureProblem::lost, target_.kind));
    };
  }
  scheduleReview(&reconnectCall_, kReconnectInterval, &PipeWireSource::reconnect);
  if (!capture_->connection) {
    int status = 0;
    capture_->connection = PipeWireConnection::open(*capture_->loop, &status);
    if (!capture_->connection) return {};
  }
  if (Report report = reviewConnection()) return report;
  // Only a device is missing, and a missing device is not an interruption.
  const bool isComplete = capture_->connection && capture_->connection->isComplete() &&
                          capture_->connection->graph().hasSession() && !isTargetThere();
  return isComplete ? endInterruption() : Report();
}

PipeWireSource::Report PipeWireSource::relink() {
  relinkDelay_ = std::min<std::chrono::milliseconds>(relinkDelay_ * 2, kMaxRelinkDelay);
  if (capture_->connection && !isStreamLinked()) capture_->endStreams();
  return reviewConnection();
}

/// Returns 0 or a negative errno.
int PipeWireSource::makeStream() {
  streamOptions_ = streamFor(target_, capture_->connection->graph());
  streamSession_ = capture_->connection->graph().sessionNumber();
  const double quiet = std::chrono::duration<double>(wakefulness_).count();
  const auto handler = [this, quiet](std::span<const float> samples) {
    if (sounds_.note(samples, clock_.monotonicSeconds(), quiet)) capture_->loop->notify();
    handler_(samples);
  };
  capture_->stream = std::make_unique<PipeWireStream>(*capture_->loop, *capture_->connection,
                                                      streamOptions_, handler);
  return capture_->stream->error();
}

/// Whether the stream must be replaced.
bool PipeWireSource::isStreamStale() const {
  if (!capture_->stream) return false;
  // A session manager does not link streams that are older than itself.
  const AudioGraph& graph = capture_->connection->graph();
  if (capture_->stream->isDead() || streamSession_ != graph.sessionNumber()) return true;
  return !isCapturedBy(streamOptions_, target_, graph);
}

bool PipeWireSource::isStreamLinked() const {
  if (!capture_->stream) return false;
  const AudioGraph& graph = capture_->connection->graph();
  const std::uint32_t node = capture_->stream->nodeID();
  if (target_.isProgram()) {
    return std::ranges::all_of(linksToPrograms(target_, node, graph), [&](const PortPair& pair) {
      return graph.isLinked(graph.ports().at(pair.output).node, node);
    });
  }
  const AudioDevice* device = deviceOf(target_, graph);
  return device && graph.isLinked(device->id, node);
}

bool PipeWireSource::isTargetThere() const {
  return canBeCaptured(target_, capture_->connection->graph());
}

}  // namespace velun
