// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_audio_platform.h"

#include "platform/audio/linux/pipewire_audio_hardware.h"
#include "platform/audio/linux/pipewire_input_node.h"

#include <pipewire/pipewire.h>
#include <utility>

namespace velun {

PipeWireAudioPlatform::PipeWireAudioPlatform(Clock& clock, std::chrono::milliseconds wakefulness)
    : clock_(clock), wakefulness_(wakefulness) {}

PipeWireAudioPlatform::~PipeWireAudioPlatform() {
  if (isLibraryLoaded_) pw_deinit();
}

std::unique_ptr<AudioHardware> PipeWireAudioPlatform::makeHardware(
    AudioInterruptionHandler onInterruption) {
  loadLibrary();
  return std::make_unique<PipeWireAudioHardware>(clock_, wakefulness_, std::move(onInterruption));
}

std::unique_ptr<AudioInputNode> PipeWireAudioPlatform::makeInputNode(
    AudioInterruptionHandler onInterruption) {
  loadLibrary();
  return std::make_unique<PipeWireInputNode>(clock_, std::move(onInterruption));
}

/// Not before captions start for the first time, so that the program itself starts quickly.
void PipeWireAudioPlatform::loadLibrary() {
  if (isLibraryLoaded_) return;
  pw_init(nullptr, nullptr);
  isLibraryLoaded_ = true;
}

}  // namespace velun
