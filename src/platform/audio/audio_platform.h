// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_hardware.h"
#include "platform/audio/audio_input_node.h"
#include "platform/audio/audio_interruption.h"

#include <memory>

namespace velun {

/// Makes what one recognition run captures with. `onInterruption` hears what becomes of the
/// capture when the sound server goes away. Main thread.
class AudioPlatform {
 public:
  virtual ~AudioPlatform() = default;

  virtual std::unique_ptr<AudioHardware> makeHardware(AudioInterruptionHandler onInterruption) = 0;
  virtual std::unique_ptr<AudioInputNode> makeInputNode(
      AudioInterruptionHandler onInterruption) = 0;
};

}  // namespace velun
