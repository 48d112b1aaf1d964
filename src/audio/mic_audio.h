// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/audio_source.h"
#include "platform/audio/audio_input_node.h"

#include <memory>

namespace velun {

/// The microphone.
class MicAudio final : public AudioSource {
 public:
  explicit MicAudio(std::unique_ptr<AudioInputNode> inputNode);

  /// Throws the input's own error; the tap stays installed then.
  void start(Handler handler) override;
  void stop() override;

 private:
  std::unique_ptr<AudioInputNode> inputNode_;
};

}  // namespace velun
