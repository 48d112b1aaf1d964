// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_target.h"
#include "platform/audio/linux/pipewire_connection.h"

#include <compare>
#include <cstdint>
#include <set>

namespace velun {

/// An output port of a program and the input port that hears it.
struct PortPair {
  std::uint32_t output = 0;
  std::uint32_t input = 0;
  auto operator<=>(const PortPair&) const = default;
};

/// The links that a stereo stream needs to hear the programs of `target`, each channel on its side:
/// none while none of them plays, or while the stream has no ports yet.
std::set<PortPair> linksToPrograms(const AudioTarget& target, std::uint32_t stream,
                                   const AudioGraph& graph);

/// Links the streams of programs into one capture stream while programs come and go. What the user
/// hears is not changed. Called under the loop's lock.
class ProgramLinks {
 public:
  /// Requests the links that are missing. They end with the port of either side.
  void update(const std::set<PortPair>& wanted, PipeWireConnection& connection);

 private:
  std::set<PortPair> requested_;
};

}  // namespace velun
