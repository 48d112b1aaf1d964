// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QString>

namespace velun {

/// How far a recording is captioned: "12:30 of 45:00, 3 min left", in the interface language.
/// `position` and `duration` in seconds of the recording, `elapsed` in seconds since the start.
QString recordingProgress(double position, std::optional<double> duration, double elapsed);

}  // namespace velun
