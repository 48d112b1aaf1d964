// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_target.h"
#include "settings/app_settings.h"

namespace velun {

/// The target of one program, or of all but one: not for `ProgramChoice::Scope::all`.
AudioTarget targetOf(const ProgramChoice& program);

/// What the settings say to caption.
AudioTarget captionTarget(const AppSettings& settings);

/// That in words, without a device, such as "Computer" or "Only Firefox", localized.
QString captionSourceTitle(const AppSettings& settings);

}  // namespace velun
