// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

/// Whether the desktop says that the network connection is paid for by amount; false when it does
/// not know. Main thread.
bool isConnectionMetered();

}  // namespace velun
