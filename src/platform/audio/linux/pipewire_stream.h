// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/linux/pipewire_connection.h"
#include "platform/audio/pcm_buffer.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace velun {

/// What a stream captures, and how it shows among the nodes of the sound server.
struct PipeWireStreamOptions {
  std::string nodeName;
  /// Hears what a sink plays; else a source.
  bool capturesSink = false;
  /// Keeps the sink running although nothing plays; else it is heard only while something does.
  bool keepsAwake = false;
  /// The name of the one device to capture, which the stream does not outlive. Empty for the
  /// default device, which it then follows.
  std::string target;
  /// 0 for as many channels as the device has.
  int channelCount = 0;
};

/// One capture stream, from its connection to its destruction. Everything is called under the
/// loop's lock; the callbacks are called on the loop's thread.
class PipeWireStream {
 public:
  using BufferHandler = std::function<void(const PcmBuffer&)>;

  /// `onBuffer` outlives the stream. `onChange` says that the state has changed.
  PipeWireStream(PipeWireConnection& connection, const PipeWireStreamOptions& options,
                 const BufferHandler& onBuffer, std::function<void()> onChange);
  ~PipeWireStream();
  PipeWireStream(const PipeWireStream&) = delete;
  PipeWireStream& operator=(const PipeWireStream&) = delete;

  /// 0, or the negative errno with which the stream could not be made.
  int error() const { return error_; }
  /// Whether the server has taken it in; it may still wait for a device.
  bool isReady() const { return isReady_; }
  /// The server has given it up; it will not come back.
  bool isDead() const { return isDead_; }
  /// The id of its node, once it is ready.
  std::uint32_t nodeID() const;

 private:
  struct Implementation;

  std::unique_ptr<Implementation> implementation_;
  std::function<void()> onChange_;
  int error_ = 0;
  bool isReady_ = false;
  bool isDead_ = false;
};

}  // namespace velun
