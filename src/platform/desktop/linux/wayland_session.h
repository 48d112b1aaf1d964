// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun {

/// Whether the session's Wayland compositor can show layer surfaces: it is asked over a connection
/// of its own, so that the answer is known before the application object is created.
bool offersLayerSurfaces();

}  // namespace velun
