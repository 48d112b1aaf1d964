// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/audio_input.h"

#include <array>
#include <optional>
#include <QString>

namespace velun {

/// What the user wants to have captioned.
enum class InputChoice { computer, microphone, both };

inline constexpr std::array allInputChoices = {InputChoice::computer, InputChoice::microphone,
                                               InputChoice::both};

/// The name for other programs: "computer", "microphone" or "both".
QString rawValue(InputChoice choice);

/// The choice with this name; nothing for any other text.
std::optional<InputChoice> inputChoiceFromRawValue(const QString& raw);

/// The label in the interface language.
QString title(InputChoice choice);

}  // namespace velun
