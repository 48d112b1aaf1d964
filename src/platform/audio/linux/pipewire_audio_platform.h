// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_platform.h"
#include "platform/audio/linux/pipewire_capture.h"
#include "platform/foundation/clock.h"

namespace velun {

/// Capturing through PipeWire. Main thread.
class PipeWireAudioPlatform final : public AudioPlatform {
 public:
  /// `clock` must outlive the platform. While captions run, the default output is kept from being
  /// suspended for `wakefulness` after the last sound, so that the first word after a pause is
  /// captured completely.
  explicit PipeWireAudioPlatform(Clock& clock,
                                 std::chrono::milliseconds wakefulness = std::chrono::seconds(30));
  ~PipeWireAudioPlatform() override;
  PipeWireAudioPlatform(const PipeWireAudioPlatform&) = delete;
  PipeWireAudioPlatform& operator=(const PipeWireAudioPlatform&) = delete;

  std::unique_ptr<AudioTargets> followTargets() override;
  std::unique_ptr<AudioSource> makeSource(const AudioTarget& target) override;

 private:
  void loadLibrary();

  Clock& clock_;
  const std::chrono::milliseconds wakefulness_;
  bool isLibraryLoaded_ = false;
  std::unique_ptr<PipeWireTeardown> teardown_;
};

}  // namespace velun
