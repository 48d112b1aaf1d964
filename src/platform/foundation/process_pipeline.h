// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/file_descriptor.h"

#include <chrono>
#include <QByteArray>
#include <QStringList>
#include <span>
#include <sys/types.h>
#include <vector>

namespace velun {

/// How child processes are started.
struct ProcessOptions {
  /// Added to the inherited environment as "NAME=value"; replaces variables of the same name.
  std::vector<std::string> environment;
  /// Discards what they write to their standard error.
  bool discardsErrors = false;
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

  enum class Event { transferred, timedOut, ended };

  /// Waits until the first process accepts input or the last one has written something. Removes
  /// what was written from the front of `input`, and appends at most 64 KiB to `output`. `ended`
  /// means that there will be no more output.
  Event exchange(std::span<const char>& input, QByteArray& output,
                 std::chrono::milliseconds timeout);

  /// Whether every process runs and there is no unread output.
  bool isIdle() const;

  /// Ends the output: `exchange` returns `ended` soon, now and from now on. Any thread.
  void interrupt();

  /// In the order of the commands.
  const std::vector<pid_t>& processIds() const { return processIds_; }

 private:
  void start(const std::vector<QStringList>& commands, const ProcessOptions& options);
  void killAll();
  bool read(QByteArray& output) const;
  bool write(std::span<const char>& input) const;

  FileDescriptor input_;
  FileDescriptor output_;
  std::vector<pid_t> processIds_;
};

}  // namespace velun
