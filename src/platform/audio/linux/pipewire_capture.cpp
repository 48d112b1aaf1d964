// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_capture.h"

#include <algorithm>

namespace velun {

namespace {

using namespace std::chrono_literals;

constexpr auto kTeardownTimeout = 5s;

bool canBeDestroyed(const PipeWireCapture& capture) {
  const PipeWireLoop::Lock lock(*capture.loop);
  const auto isSettled = [](const std::unique_ptr<PipeWireStream>& stream) {
    return !stream || stream->error() != 0 || stream->isReady() || stream->isDead();
  };
  if (!capture.connection || capture.connection->isLost()) return true;
  return isSettled(capture.stream) && isSettled(capture.awakeStream);
}

}  // namespace

PipeWireCapture::~PipeWireCapture() {
  const PipeWireLoop::Lock lock(*loop);
  disconnect();
}

void PipeWireCapture::endStreams() {
  awakeStream.reset();
  stream.reset();
  links = {};
}

void PipeWireCapture::disconnect() {
  endStreams();
  connection.reset();
}

void PipeWireTeardown::end(std::unique_ptr<PipeWireCapture> capture) {
  PipeWireLoop& loop = *capture->loop;
  QObject::disconnect(&loop, nullptr, nullptr, nullptr);
  {
    const PipeWireLoop::Lock lock(loop);
    if (capture->stream) capture->stream->silence();
  }
  if (canBeDestroyed(*capture)) return;
  const PipeWireCapture* key = capture.get();
  QObject::connect(&loop, &PipeWireLoop::changed, &loop, [this, key] {
    if (canBeDestroyed(*key)) remove(key);
  });
  auto timeout = clock_.callAfter(kTeardownTimeout, [this, key] { remove(key); });
  waiting_.push_back({std::move(capture), std::move(timeout)});
}

void PipeWireTeardown::remove(const PipeWireCapture* capture) {
  std::erase_if(waiting_,
                [capture](const Waiting& waiting) { return waiting.capture.get() == capture; });
}

}  // namespace velun
