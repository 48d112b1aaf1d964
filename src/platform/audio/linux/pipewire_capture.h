// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/linux/pipewire_connection.h"
#include "platform/audio/linux/pipewire_loop.h"
#include "platform/audio/linux/pipewire_stream.h"
#include "platform/audio/linux/program_links.h"
#include "platform/foundation/clock.h"

#include <memory>
#include <vector>

namespace velun {

/// The PipeWire objects of one capture, destroyed in the right order. The members are changed under
/// the loop's lock only.
struct PipeWireCapture {
  explicit PipeWireCapture(std::unique_ptr<PipeWireLoop> itsLoop) : loop(std::move(itsLoop)) {}
  /// The lock must not be held.
  ~PipeWireCapture();
  PipeWireCapture(const PipeWireCapture&) = delete;
  PipeWireCapture& operator=(const PipeWireCapture&) = delete;

  void endStreams();
  void disconnect();

  const std::unique_ptr<PipeWireLoop> loop;
  std::unique_ptr<PipeWireConnection> connection;
  std::unique_ptr<PipeWireStream> stream;
  /// Captures the same output without a handler, so that the output stays awake.
  std::unique_ptr<PipeWireStream> awakeStream;
  /// The links of the stream, where it captures programs.
  ProgramLinks links;
};

/// Destroys captures, each once PipeWire has replied to the requests of its streams: libpipewire
/// leaks the descriptors of a stream that is destroyed earlier. Main thread.
class PipeWireTeardown {
 public:
  explicit PipeWireTeardown(Clock& clock) : clock_(clock) {}

  /// The buffer handlers are not called any more once this returns. Never blocks.
  void end(std::unique_ptr<PipeWireCapture> capture);

 private:
  struct Waiting {
    std::unique_ptr<PipeWireCapture> capture;
    std::unique_ptr<ScheduledCall> timeout;
  };

  void remove(const PipeWireCapture* capture);

  Clock& clock_;
  std::vector<Waiting> waiting_;
};

}  // namespace velun
