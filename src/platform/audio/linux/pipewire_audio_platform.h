// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_platform.h"
#include "platform/foundation/clock.h"

namespace velun {

/// Capturing through PipeWire. Outlives what it makes. Main thread.
class PipeWireAudioPlatform final : public AudioPlatform {
 public:
  /// `clock` outlives the platform.
  explicit PipeWireAudioPlatform(Clock& clock);
  ~PipeWireAudioPlatform() override;
  PipeWireAudioPlatform(const PipeWireAudioPlatform&) = delete;
  PipeWireAudioPlatform& operator=(const PipeWireAudioPlatform&) = delete;

  std::unique_ptr<AudioHardware> makeHardware(AudioInterruptionHandler onInterruption) override;
  std::unique_ptr<AudioInputNode> makeInputNode(AudioInterruptionHandler onInterruption) override;

 private:
  void loadLibrary();

  Clock& clock_;
  bool isLibraryLoaded_ = false;
};

}  // namespace velun
