// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_platform.h"
#include "support/scripted_audio_hardware.h"
#include "support/scripted_input_node.h"

#include <memory>

namespace velun::test {

/// An audio platform whose hardware and input node follow scripts.
class ScriptedAudioPlatform final : public AudioPlatform {
 public:
  std::unique_ptr<AudioHardware> makeHardware(AudioInterruptionHandler handler) override {
    onInterruption = std::move(handler);
    return std::make_unique<ScriptedAudioHardware>(hardware);
  }
  std::unique_ptr<AudioInputNode> makeInputNode(AudioInterruptionHandler handler) override {
    onInterruption = std::move(handler);
    return std::make_unique<ScriptedInputNode>(inputNode);
  }

  std::shared_ptr<AudioHardwareScript> hardware = std::make_shared<AudioHardwareScript>();
  std::shared_ptr<InputNodeScript> inputNode = std::make_shared<InputNodeScript>();
  AudioInterruptionHandler onInterruption;
};

}  // namespace velun::test
