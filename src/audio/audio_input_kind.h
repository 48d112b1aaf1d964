// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/audio_input.h"
#include "platform/audio/audio_target.h"

namespace velun {

/// The kind of device that an input captures.
constexpr AudioTarget::Kind deviceKind(AudioInput input) {
  return input == AudioInput::microphone ? AudioTarget::Kind::input : AudioTarget::Kind::output;
}

/// The input of a line that was heard on a target of this kind.
constexpr AudioInput inputOf(AudioTarget::Kind kind) {
  return kind == AudioTarget::Kind::input ? AudioInput::microphone : AudioInput::computer;
}

}  // namespace velun
