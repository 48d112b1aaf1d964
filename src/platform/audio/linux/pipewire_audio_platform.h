// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_platform.h"
#include "platform/foundation/clock.h"

namespace velun {

/// Capturing through PipeWire. Outlives what it makes. Main thread.
class PipeWireAudioPlatform final : public AudioPlatform {
 public:
  /// `clock` outlives the platform. While captions run, the default output is kept awake for
  /// `wakefulness` after the last sound, so that the first word after a pause is heard whole; then
  /// it may sleep.
  explicit PipeWireAudioPlatform(Clock& clock,
                                 std::chrono::milliseconds wakefulness = std::chrono::seconds(30));
  ~PipeWireAudioPlatform() override;
  PipeWireAudioPlatform(const PipeWireAudioPlatform&) = delete;
  PipeWireAudioPlatform& operator=(const PipeWireAudioPlatform&) = delete;

  std::unique_ptr<AudioHardware> makeHardware(AudioInterruptionHandler onInterruption) override;
  std::unique_ptr<AudioInputNode> makeInputNode(AudioInterruptionHandler onInterruption) override;

 private:
  void loadLibrary();

  Clock& clock_;
  const std::chrono::milliseconds wakefulness_;
  bool isLibraryLoaded_ = false;
};

}  // namespace velun
