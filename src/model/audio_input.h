// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <QString>

namespace velun {

/// Where a line's audio came from.
enum class AudioInput { computer, microphone };

inline constexpr std::array allAudioInputs = {AudioInput::computer, AudioInput::microphone};

/// The persisted form: "computer" or "microphone".
QString rawValue(AudioInput input);

/// The label in the interface language.
QString title(AudioInput input);

}  // namespace velun
