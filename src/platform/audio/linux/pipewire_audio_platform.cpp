// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_audio_platform.h"

#include "platform/audio/linux/pipewire_source.h"
#include "platform/audio/linux/pipewire_targets.h"

#include <pipewire/pipewire.h>

namespace velun {

PipeWireAudioPlatform::PipeWireAudioPlatform(Clock& clock, std::chrono::milliseconds wakefulness)
    : clock_(clock), wakefulness_(wakefulness) {}

PipeWireAudioPlatform::~PipeWireAudioPlatform() {
  teardown_.reset();
  if (isLibraryLoaded_) pw_deinit();
}

std::unique_ptr<AudioTargets> PipeWireAudioPlatform::followTargets() {
  loadLibrary();
  return std::make_unique<PipeWireTargets>(clock_);
}

std::unique_ptr<AudioSource> PipeWireAudioPlatform::makeSource(const AudioTarget& target) {
  loadLibrary();
  return std::make_unique<PipeWireSource>(target, clock_, *teardown_, wakefulness_);
}

/// Called when it is first needed, so that the program starts quickly.
void PipeWireAudioPlatform::loadLibrary() {
  if (isLibraryLoaded_) return;
  pw_init(nullptr, nullptr);
  isLibraryLoaded_ = true;
  teardown_ = std::make_unique<PipeWireTeardown>(clock_);
}

}  // namespace velun
