// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_source.h"
#include "platform/audio/linux/pipewire_connection.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

namespace velun {

/// What a stream captures, and how it shows among the nodes of PipeWire.
struct PipeWireStreamOptions {
  std::string nodeName;
  /// Captures what a sink or programs play; else a source.
  bool capturesSink = false;
  /// Is linked by its owner; else by the session manager.
  bool isLinkedByOwner = false;
  /// Keeps the sink running although nothing plays; else the stream does not prevent the sink from
  /// being suspended. A stream that is linked by its owner then runs without links, too: its
  /// handler gets silence.
  bool keepsAwake = false;
  /// The name of the only device to capture; the stream ends with it. Empty for the default device,
  /// which the stream then follows.
  std::string target;
  /// The number of channels of a source whose channels have no positions, else 0.
  std::uint32_t auxChannelCount = 0;
};

/// One capture stream, which PipeWire resamples to 16 kHz. Notifies the loop when its state has
/// changed. Everything is called under the loop's lock.
class PipeWireStream {
 public:
  /// Calls `handler`, unless it is null, on the loop's thread.
  PipeWireStream(PipeWireLoop& loop, PipeWireConnection& connection,
                 const PipeWireStreamOptions& options, AudioSource::Handler handler);
  ~PipeWireStream();
  PipeWireStream(const PipeWireStream&) = delete;
  PipeWireStream& operator=(const PipeWireStream&) = delete;

  /// 0, or the negative errno with which PipeWire refused the stream.
  int error() const { return error_; }
  /// Whether PipeWire has accepted the stream, which may still wait for a device.
  bool isReady() const { return isReady_; }
  /// PipeWire has ended the stream for good.
  bool isDead() const { return isDead_; }
  /// The id of its node, once it is ready.
  std::uint32_t nodeID() const;
  /// Changes `keepsAwake` of a stream that is linked by its owner. Going to sleep drops some
  /// milliseconds of sound.
  void keepAwake(bool isAwake);
  /// The handler is not called any more.
  void silence() { handler_ = nullptr; }

 private:
  struct Implementation;

  std::unique_ptr<Implementation> implementation_;
  PipeWireLoop& loop_;
  AudioSource::Handler handler_;
  int error_ = 0;
  bool isReady_ = false;
  bool isKeptAwake_ = false;
  bool isDead_ = false;
};

}  // namespace velun
