// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace velun {

/// What became of a capture that lost its sound server.
enum class AudioInterruption {
  /// The server, or the session manager that connects programs with devices, is gone; the capture
  /// is trying to reach it again.
  began,
  /// Audio flows again.
  ended,
  /// Nothing came back within 30 s; the capture has given up.
  failed,
};

/// Called on the main thread.
using AudioInterruptionHandler = std::function<void(AudioInterruption)>;

}  // namespace velun
