// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_input_node.h"
#include "platform/audio/linux/pipewire_capture.h"

namespace velun {

/// The default microphone through PipeWire. Buffers come in the pieces that the sound server works
/// in, which are shorter than the tap asks for: captions should not wait for more.
class PipeWireInputNode final : public AudioInputNode {
 public:
  PipeWireInputNode(Clock& clock, AudioInterruptionHandler onInterruption);

  /// Of rate 0 when there is no microphone.
  AudioFormat outputFormat() const override;
  /// Buffers carry the microphone's own format, which may change when another takes its place.
  void installTap(std::size_t bufferSize, const AudioFormat& format, TapBlock block) override;
  void removeTap() override;
  void startEngine() override;
  void stopEngine() override;

 private:
  mutable PipeWireCapture capture_;
  TapBlock block_;
};

}  // namespace velun
