// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_input_node.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"

#include <utility>

namespace velun {

namespace {

constexpr const char* kNodeName = "Velun Microphone";

}  // namespace

PipeWireInputNode::PipeWireInputNode(Clock& clock, AudioInterruptionHandler onInterruption)
    : capture_(PipeWireCapture::Kind::microphone, clock, {}, std::move(onInterruption)) {}

AudioFormat PipeWireInputNode::outputFormat() const {
  if (capture_.open() != 0) return {};
  const std::optional<AudioDevice> microphone = capture_.defaultDevice();
  return microphone ? capture_.formatOf(*microphone) : AudioFormat();
}

void PipeWireInputNode::installTap(std::size_t /*bufferSize*/, const AudioFormat& /*format*/,
                                   TapBlock block) {
  block_ = std::move(block);
}

void PipeWireInputNode::removeTap() {
  capture_.stop();
  block_ = nullptr;
}

void PipeWireInputNode::startEngine() {
  if (capture_.open() != 0) {
    throw Failure(L("The sound server can’t be reached", "사운드 서버에 연결할 수 없습니다"));
  }
  if (!capture_.defaultDevice()) {
    throw Failure(L("No microphone was found", "마이크를 찾을 수 없습니다"));
  }
  const int status = capture_.start(kNodeName, [block = block_](const PcmBuffer& buffer) {
    if (block) block(buffer);
  });
  if (status != 0) {
    const QString code = QString::number(status);
    throw Failure(L("The microphone can’t be started (" + code + ")",
                    "마이크를 시작할 수 없습니다 (" + code + ")"));
  }
}

void PipeWireInputNode::stopEngine() {
  capture_.close();
}

}  // namespace velun
