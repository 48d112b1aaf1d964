// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/recording/recording_feed.h"

#include "platform/foundation/failure.h"

#include <QScopeGuard>

namespace velun {

namespace {

/// Seconds of sound that may wait for the recognizer: enough to keep it busy, and less than what
/// a recognizer that listens to live sound would skip.
constexpr double kMaxPending = 2.5;

}  // namespace

RecordingFeed::RecordingFeed(const QString& program, const QString& path,
                             std::shared_ptr<SpeechInput> input)
    : input_(std::move(input)), thread_([this, program, path] { run(program, path); }) {}

RecordingFeed::~RecordingFeed() {
  {
    const std::lock_guard lock(mutex_);
    isEnding_ = true;
    if (stream_) stream_->interrupt();
  }
  input_->finish();
  thread_.join();
}

void RecordingFeed::setStream(RecordingStream* stream) {
  const std::lock_guard lock(mutex_);
  stream_ = stream;
  if (stream_ && isEnding_) stream_->interrupt();
}

void RecordingFeed::run(const QString& program, const QString& path) {
  std::optional<QString> error;
  try {
    RecordingStream stream(program, path);
    setStream(&stream);
    const auto forget = qScopeGuard([this] { setStream(nullptr); });
    pass(stream);
  } catch (const Cancelled&) {
    return;
  } catch (const std::exception& failure) {
    error = descriptionOf(failure);
  }
  // Before the recognizer can end its run.
  QMetaObject::invokeMethod(
      this, [this, error] { Q_EMIT ended(error); }, Qt::QueuedConnection);
  input_->finish();
}

void RecordingFeed::pass(RecordingStream& stream) {
  stream.open();
  QMetaObject::invokeMethod(
      this, [this, duration = stream.duration()] { Q_EMIT opened(duration); },
      Qt::QueuedConnection);
  while (input_->awaitRoom(kMaxPending)) {
    SpeechSamples piece{.samples = stream.next()};
    if (piece.samples.empty()) return;
    position_ = position_ + piece.seconds();
    piece.heardUntil = position_;
    input_->yield(std::move(piece));
  }
}

}  // namespace velun
