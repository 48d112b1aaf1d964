// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_target.h"
#include "platform/audio/linux/audio_graph.h"
#include "platform/audio/linux/pipewire_stream.h"

namespace velun {

/// The device of `target`; null while it does not exist, and for programs.
const AudioDevice* deviceOf(const AudioTarget& target, const AudioGraph& graph);

/// Whether a stream for `target` can be made now. A program need not play for that.
bool canBeCaptured(const AudioTarget& target, const AudioGraph& graph);

/// The stream that captures `target`, which can be captured now.
PipeWireStreamOptions streamFor(const AudioTarget& target, const AudioGraph& graph);

/// Whether a stream with these options captures `target` now.
bool isCapturedBy(const PipeWireStreamOptions& options, const AudioTarget& target,
                  const AudioGraph& graph);

}  // namespace velun
