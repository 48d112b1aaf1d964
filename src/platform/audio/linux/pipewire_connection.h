// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_format.h"
#include "platform/audio/linux/audio_graph.h"
#include "platform/audio/linux/pipewire_loop.h"
#include "platform/pipewire/linux/pipewire_registry.h"

#include <chrono>
#include <functional>
#include <memory>

namespace velun {

/// One connection to the sound server, which follows the server's devices and defaults. Everything
/// is called under the loop's lock; `onChange` is called on the loop's thread.
class PipeWireConnection {
 public:
  /// None, with a negative errno in `error`, when there is no server. `onChange` says that the
  /// graph has changed or the connection is lost.
  static std::unique_ptr<PipeWireConnection> open(PipeWireLoop& loop,
                                                  std::function<void()> onChange, int* error);
  ~PipeWireConnection();
  PipeWireConnection(const PipeWireConnection&) = delete;
  PipeWireConnection& operator=(const PipeWireConnection&) = delete;

  pw_core* core() const;
  const AudioGraph& graph() const { return graph_; }
  /// The server is gone; only destroying the connection is left to do.
  bool isLost() const { return isLost_; }

  /// Waits until the server has answered everything asked before. Returns 0 or a negative errno.
  int synchronize(std::chrono::milliseconds limit);

  /// Asks the server for the format of a device; one that it does not tell has rate 0.
  AudioFormat formatOf(std::uint32_t device, std::chrono::milliseconds limit);

 private:
  class Following;

  PipeWireConnection(PipeWireLoop& loop, std::function<void()> onChange);
  void changed();

  PipeWireLoop& loop_;
  std::function<void()> onChange_;
  std::unique_ptr<Following> following_;
  std::unique_ptr<PipeWireRegistry> registry_;
  AudioGraph graph_;
  bool isLost_ = false;
  int lastSynchronized_ = -1;
};

}  // namespace velun
