// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/byte_channel.h"

#include <chrono>
#include <QByteArray>
#include <QStringList>
#include <span>
#include <sys/types.h>
#include <vector>

namespace velun {

/// The descriptor of a program that takes connections: each message is one byte with a socket.
constexpr int kControlDescriptor = 3;

/// How child processes are started.
struct ProcessOptions {
  /// Added to the inherited environment as "NAME=value"; replaces variables of the same name.
  std::vector<std::string> environment;
  /// Discards what they write to their standard error.
  bool discardsErrors = false;
  /// Every program gets a socket as its descriptor 3 (`kControlDescriptor`), over which `connect`
  /// passes connections. It is closed with the pipeline, also if Velun crashes.
  bool takesConnections = false;
};

/// Child processes that run as long as this object: the output of each is the input of the next.
/// Blocking, for one thread other than the main thread.
class ProcessPipeline {
 public:
  /// Starts the commands, each a program (looked up in PATH when it has no slash) and its
  /// arguments. Throws `std::system_error`.
  explicit ProcessPipeline(const std::vector<QStringList>& commands,
                           const ProcessOptions& options = {});

  /// Kills the processes.
  ~ProcessPipeline();

  Q_DISABLE_COPY_MOVE(ProcessPipeline)

  using Event = ByteChannel::Event;

  /// As `ByteChannel::exchange`, with the input of the first process and the output of the last.
  Event exchange(std::span<const char>& input, QByteArray& output,
                 std::chrono::milliseconds timeout) {
    return channel_.exchange(input, output, timeout);
  }

  /// Whether every process runs and there is no unread output.
  bool isIdle() const;

  /// Ends the output: `exchange` returns `ended` soon, now and from now on. Any thread.
  void interrupt() { channel_.interrupt(); }

  /// Takes the standard input and output away, so that they can be closed before the processes end.
  /// Nothing else may be called for them then.
  ByteChannel takeChannel() { return std::move(channel_); }

  /// Another connection to the one process, which takes connections. Throws `std::system_error`.
  /// Any thread, one at a time.
  ByteChannel connect();

  /// In the order of the commands.
  const std::vector<pid_t>& processIds() const { return processIds_; }

 private:
  void start(const std::vector<QStringList>& commands, const ProcessOptions& options);
  void killAll();

  ByteChannel channel_;
  FileDescriptor control_;
  std::vector<pid_t> processIds_;
};

}  // namespace velun
