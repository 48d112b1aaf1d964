// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/caption_targets.h"
#include "settings/app_settings.h"

namespace velun {

/// The target of one program, or of all but one: not for `ProgramChoice::Scope::all`.
AudioTarget targetOf(const ProgramChoice& program);

/// What the settings say to caption.
CaptionTargets captionTargets(const AppSettings& settings);

/// That in words, without a device, such as "Computer" or "Only Firefox", localized.
QString captionSourceTitle(const AppSettings& settings);

}  // namespace velun
