// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/linux/audio_graph.h"
#include "platform/audio/linux/pipewire_loop.h"
#include "platform/pipewire/linux/pipewire_registry.h"

#include <memory>

namespace velun {

/// One connection to PipeWire, which follows PipeWire's devices, links and default devices.
/// Notifies the loop whenever something has changed. Everything is called under the loop's lock.
class PipeWireConnection {
 public:
  /// Returns null and sets `error` to a negative errno when PipeWire is not running.
  static std::unique_ptr<PipeWireConnection> open(PipeWireLoop& loop, int* error);
  ~PipeWireConnection();
  PipeWireConnection(const PipeWireConnection&) = delete;
  PipeWireConnection& operator=(const PipeWireConnection&) = delete;

  pw_core* core() const;
  const AudioGraph& graph() const { return graph_; }
  /// Whether the graph holds everything that PipeWire had when the connection was opened.
  bool isComplete() const { return answersLeft_ == 0; }
  /// PipeWire has ended; the connection can only be destroyed.
  bool isLost() const { return isLost_; }

 private:
  class Listener;

  explicit PipeWireConnection(PipeWireLoop& loop);

  PipeWireLoop& loop_;
  std::unique_ptr<Listener> listener_;
  std::unique_ptr<PipeWireRegistry> registry_;
  AudioGraph graph_;
  bool isLost_ = false;
  /// PipeWire's first reply contains the objects, the second one their properties.
  int answersLeft_ = 2;
};

}  // namespace velun
