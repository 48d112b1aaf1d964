// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/mic_audio.h"

#include <utility>

namespace velun {

namespace {

constexpr std::size_t kTapBufferSize = 4096;

}  // namespace

MicAudio::MicAudio(std::unique_ptr<AudioInputNode> inputNode) : inputNode_(std::move(inputNode)) {}

void MicAudio::start(Handler handler) {
  const AudioFormat format = inputNode_->outputFormat();
  inputNode_->installTap(kTapBufferSize, format, std::move(handler));
  inputNode_->startEngine();
}

void MicAudio::stop() {
  inputNode_->removeTap();
  inputNode_->stopEngine();
}

}  // namespace velun
