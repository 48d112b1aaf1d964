// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

/// Runs `velun captions`: captions without windows, on the standard output. Returns the process's
/// exit status.
int runCaptionsProgram(int argc, char** argv);

}  // namespace velun
