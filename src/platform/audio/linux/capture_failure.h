// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_target.h"

#include <QString>

namespace velun {

/// Why a capture could not be started, or ended.
enum class CaptureProblem {
  /// Threads, memory or file descriptors.
  outOfResources,
  notConfigured,
  notRunning,
  notAnswering,
  noSessionManager,
  noDevice,
  refused,
  lost,
};

/// The problem of opening a connection that failed with this negative errno.
CaptureProblem problemOf(int status);

/// The stage that failed, the reason and what to do, in the interface language.
QString describe(CaptureProblem problem, AudioTarget::Kind kind);

}  // namespace velun
