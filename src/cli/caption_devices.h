// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/audio_input.h"
#include "platform/audio/audio_platform.h"
#include "platform/foundation/clock.h"

#include <vector>

namespace velun {

/// The devices and programs that the sound server knows; empty if it has not answered after two
/// seconds. Runs the event loop meanwhile. Main thread.
std::vector<AudioTarget> currentDevices(AudioPlatform& audio, Clock& clock);

/// The device of `input` whose id or name is `wanted`, in any case of letters; with an empty one
/// the default device. Throws `Failure` if there is none.
AudioTarget deviceNamed(const QString& wanted, AudioInput input,
                        const std::vector<AudioTarget>& devices);

/// One line for each: the input, or "program", the id and the name.
QString deviceList(const std::vector<AudioTarget>& devices);

}  // namespace velun
