// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_capture.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <QMetaObject>
#include <utility>

namespace velun {

using namespace std::chrono_literals;

namespace {

// A server that answers takes milliseconds; one that does not must not hold the program for long.
constexpr auto kAnswerLimit = 3000ms;
constexpr auto kSessionLimit = 1000ms;
constexpr auto kDefaultLimit = 300ms;

constexpr auto kRetryInterval = 500ms;
// A session manager that restarts is back within this time; only a longer absence is reported.
constexpr auto kSessionGrace = 1500ms;
// Linking takes milliseconds. A stream that is not linked to its device after this time is made
// anew, less and less often: a session manager does not move one while its device is idle.
constexpr auto kFirstRelinkDelay = 1000ms;
constexpr auto kLastRelinkDelay = 30000ms;

}  // namespace

PipeWireCapture::PipeWireCapture(Kind kind, Clock& clock, std::chrono::milliseconds wakefulness,
                                 AudioInterruptionHandler onInterruption)
    : kind_(kind),
      clock_(clock),
      wakefulness_(wakefulness),
      onInterruption_(std::move(onInterruption)) {}

PipeWireCapture::~PipeWireCapture() {
  close();
}

int PipeWireCapture::open() {
  if (isOpen()) return 0;
  int error = 0;
  loop_ = PipeWireLoop::start(kind_ == Kind::output ? "SystemAudio" : "Microphone", &error);
  if (!loop_) return error;
  {
    const PipeWireLoop::Lock lock(*loop_);
    connection_ = PipeWireConnection::open(
        *loop_, [this] { postReview(); }, &error);
    // The first answer brings the objects, the second what they say.
    if (connection_) error = connection_->synchronize(kAnswerLimit);
    if (error == 0) error = connection_->synchronize(kAnswerLimit);
  }
  if (error != 0) close();
  return error;
}

void PipeWireCapture::close() {
  if (!isOpen()) return;
  stop();
  {
    const PipeWireLoop::Lock lock(*loop_);
    disconnect();
  }
  loop_.reset();
}

std::optional<AudioDevice> PipeWireCapture::defaultDevice() {
  if (!isOpen()) return std::nullopt;
  const PipeWireLoop::Lock lock(*loop_);
  if (!connection_) return std::nullopt;
  const bool hasSession = connection_->graph().hasSession();
  loop_->waitUntil([this] { return wantedDevice() || connection_->isLost(); },
                   hasSession ? kDefaultLimit : kSessionLimit);
  const AudioDevice* found = wantedDevice();
  return found ? std::optional(*found) : std::nullopt;
}

std::optional<AudioDevice> PipeWireCapture::device(std::uint32_t id) {
  if (!isOpen()) return std::nullopt;
  const PipeWireLoop::Lock lock(*loop_);
  const AudioDevice* found = connection_ ? connection_->graph().device(id) : nullptr;
  return found ? std::optional(*found) : std::nullopt;
}

AudioFormat PipeWireCapture::formatOf(const AudioDevice& device) {
  if (!isOpen()) return {};
  const PipeWireLoop::Lock lock(*loop_);
  return connection_ ? connection_->formatOf(device.id, kAnswerLimit) : AudioFormat();
}

int PipeWireCapture::start(const std::string& nodeName, BufferHandler onBuffer) {
  if (!isOpen()) return -ENOTCONN;
  nodeName_ = nodeName;
  sounds_.begin(clock_.monotonicSeconds());
  const double quiet = std::chrono::duration<double>(wakefulness_).count();
  onBuffer_ = [this, quiet, heard = std::move(onBuffer)](const PcmBuffer& buffer) {
    if (sounds_.note(buffer, clock_.monotonicSeconds(), quiet)) postReview();
    heard(buffer);
  };
  const PipeWireLoop::Lock lock(*loop_);
  if (!connection_ || connection_->isLost()) return -EPIPE;
  if (const int error = makeStream()) return error;
  const bool isAnswered = loop_->waitUntil(
      [this] { return stream_->isReady() || stream_->isDead() || connection_->isLost(); },
      kAnswerLimit);
  if (!isAnswered) return -ETIMEDOUT;
  isStarted_ = true;
  relinkDelay_ = kFirstRelinkDelay;
  postReview();
  return 0;
}

void PipeWireCapture::stop() {
  isStarted_ = false;
  interruptedSince_.reset();
  retryCall_.reset();
  sessionCall_.reset();
  relinkCall_.reset();
  sleepCall_.reset();
  if (!isOpen()) return;
  const PipeWireLoop::Lock lock(*loop_);
  endAwakeStream();
  stream_.reset();
}

/// On any thread: asks for a review on the main one.
void PipeWireCapture::postReview() {
  if (isReviewPosted_.exchange(true)) return;
  QMetaObject::invokeMethod(
      &context_,
      [this] {
        isReviewPosted_ = false;
        review();
      },
      Qt::QueuedConnection);
}

/// Compares what there is with what there should be.
void PipeWireCapture::review() {
  if (!isStarted_) return;
  Report found;
  {
    const PipeWireLoop::Lock lock(*loop_);
    found = reviewConnection();
  }
  report(found);
}

/// The last thing done by its caller: the handler may destroy this object.
void PipeWireCapture::report(const Report& report) {
  if (!report) return;
  if (*report == AudioInterruption::failed) close();
  const AudioInterruptionHandler handler = onInterruption_;
  if (handler) handler(*report);
}

PipeWireCapture::Report PipeWireCapture::reviewConnection() {
  if (connection_ && connection_->isLost()) disconnect();
  if (!connection_) return beginInterruption();
  if (!connection_->graph().hasSession()) {
    if (!interruptedSince_ && !sessionCall_) {
      scheduleReview(&sessionCall_, kSessionGrace,
                     &PipeWireCapture::beginInterruptionWithoutSession);
    }
    return std::nullopt;
  }
  sessionCall_.reset();
  return reviewStream();
}

PipeWireCapture::Report PipeWireCapture::reviewStream() {
  if (isStreamStale()) {
    awakeStream_.reset();
    stream_.reset();
  }
  // A session manager that has not chosen a device yet is still starting, and does not link the
  // streams that it finds then.
  if (!stream_ && wantedDevice()) makeStream();

  if (isStreamFed() || !wantedDevice()) {
    relinkCall_.reset();
    relinkDelay_ = kFirstRelinkDelay;
  } else if (!relinkCall_) {
    scheduleReview(&relinkCall_, relinkDelay_, &PipeWireCapture::relink);
  }
  reviewWakefulness();
  return isStreamFed() ? endInterruption() : std::nullopt;
}

void PipeWireCapture::reviewWakefulness() {
  const double quiet = clock_.monotonicSeconds() - sounds_.lastSound();
  const auto left = wakefulness_ - std::chrono::milliseconds(std::lround(quiet * 1000));
  if (kind_ != Kind::output || !stream_ || left <= 0ms) {
    sleepCall_.reset();
    awakeStream_.reset();
    return;
  }
  if (!awakeStream_) {
    PipeWireStreamOptions options;
    options.nodeName = nodeName_;
    options.capturesSink = true;
    options.keepsAwake = true;
    options.channelCount = 1;
    awakeStream_ = std::make_unique<PipeWireStream>(*connection_, options, onUnheardBuffer_, [] {});
  }
  if (!sleepCall_) scheduleReview(&sleepCall_, left, &PipeWireCapture::letSleep);
}

void PipeWireCapture::endAwakeStream() {
  // The library leaks descriptors of a stream that goes while it is being taken in.
  if (awakeStream_ && connection_) {
    loop_->waitUntil(
        [this] {
          return awakeStream_->isReady() || awakeStream_->isDead() || connection_->isLost();
        },
        kAnswerLimit);
  }
  awakeStream_.reset();
}

PipeWireCapture::Report PipeWireCapture::letSleep() {
  if (connection_) reviewWakefulness();
  return std::nullopt;
}

PipeWireCapture::Report PipeWireCapture::beginInterruption() {
  if (interruptedSince_) return std::nullopt;
  interruptedSince_ = clock_.monotonicSeconds();
  scheduleReview(&retryCall_, kRetryInterval, &PipeWireCapture::retry);
  return AudioInterruption::began;
}

PipeWireCapture::Report PipeWireCapture::endInterruption() {
  if (!interruptedSince_) return std::nullopt;
  interruptedSince_.reset();
  retryCall_.reset();
  return AudioInterruption::ended;
}

PipeWireCapture::Report PipeWireCapture::retry() {
  const double waited = clock_.monotonicSeconds() - *interruptedSince_;
  if (waited >= double(patience.count())) return AudioInterruption::failed;
  scheduleReview(&retryCall_, kRetryInterval, &PipeWireCapture::retry);
  if (!connection_ && !reconnect()) return std::nullopt;
  if (const Report found = reviewConnection()) return found;
  // Everything is back but a device, and that is not the sound server's fault.
  const bool isComplete = connection_ && connection_->graph().hasSession() && !wantedDevice();
  return isComplete ? endInterruption() : std::nullopt;
}

PipeWireCapture::Report PipeWireCapture::beginInterruptionWithoutSession() {
  const bool isMissing = connection_ && !connection_->graph().hasSession();
  return isMissing ? beginInterruption() : std::nullopt;
}

PipeWireCapture::Report PipeWireCapture::relink() {
  relinkDelay_ = std::min<std::chrono::milliseconds>(relinkDelay_ * 2, kLastRelinkDelay);
  if (connection_ && !isStreamFed()) {
    awakeStream_.reset();
    stream_.reset();
  }
  return reviewConnection();
}

/// Runs `action` under the lock later, unless `*call` is reset before.
void PipeWireCapture::scheduleReview(std::unique_ptr<ScheduledCall>* call,
                                     std::chrono::milliseconds delay,
                                     Report (PipeWireCapture::*action)()) {
  *call = clock_.callAfter(delay, [this, call, action] {
    call->reset();
    Report found;
    {
      const PipeWireLoop::Lock lock(*loop_);
      found = (this->*action)();
    }
    report(found);
  });
}

bool PipeWireCapture::reconnect() {
  int error = 0;
  connection_ = PipeWireConnection::open(
      *loop_, [this] { postReview(); }, &error);
  return connection_ != nullptr;
}

void PipeWireCapture::disconnect() {
  awakeStream_.reset();
  stream_.reset();
  connection_.reset();
}

int PipeWireCapture::makeStream() {
  const AudioDevice* device = wantedDevice();
  PipeWireStreamOptions options;
  options.nodeName = nodeName_;
  options.capturesSink = kind_ == Kind::output;
  // A stream without a target follows the default output by itself. A microphone's is bound to
  // its device, lest it be moved to a sink's monitor when the last microphone goes.
  if (kind_ == Kind::microphone && device) options.target = device->name;
  // The server knows best how to bring the channels of an output down to two.
  if (kind_ == Kind::output) options.channelCount = 2;
  streamTarget_ = options.target;
  streamSession_ = connection_->graph().sessionNumber();
  stream_ = std::make_unique<PipeWireStream>(*connection_, options, onBuffer_, [this] {
    loop_->wake();
    postReview();
  });
  return stream_->error();
}

bool PipeWireCapture::isStreamStale() const {
  if (!stream_) return false;
  // A session manager does not link streams that are older than itself.
  if (stream_->isDead() || streamSession_ != connection_->graph().sessionNumber()) return true;
  const AudioDevice* device = wantedDevice();
  return kind_ == Kind::microphone && (!device || device->name != streamTarget_);
}

bool PipeWireCapture::isStreamFed() const {
  const AudioDevice* device = wantedDevice();
  return stream_ && device && connection_->graph().isLinked(device->id, stream_->nodeID());
}

const AudioDevice* PipeWireCapture::wantedDevice() const {
  const AudioGraph& graph = connection_->graph();
  return kind_ == Kind::output ? graph.defaultSink() : graph.defaultSource();
}

}  // namespace velun
