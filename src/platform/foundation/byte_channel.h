// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/file_descriptor.h"

#include <chrono>
#include <QByteArray>
#include <span>

namespace velun {

/// Two sockets to another process, or one for both directions. Blocking, for one thread.
class ByteChannel {
 public:
  enum class Event { transferred, timedOut, ended };

  ByteChannel() = default;
  /// Writes to `input` and reads from `output`.
  ByteChannel(FileDescriptor input, FileDescriptor output)
      : input_(std::move(input)), output_(std::move(output)) {}

  /// Waits until the other side accepts input or has written something. Removes what was written
  /// from the front of `input`, and appends at most 64 KiB to `output`. `ended` means that there
  /// will be no more output.
  Event exchange(std::span<const char>& input, QByteArray& output,
                 std::chrono::milliseconds timeout) const;

  /// Whether there is no unread output.
  bool isIdle() const;

  /// Ends the output: `exchange` returns `ended` soon, now and from now on. Any thread.
  void interrupt() const;

 private:
  bool read(QByteArray& output) const;
  bool write(std::span<const char>& input) const;

  FileDescriptor input_;
  FileDescriptor output_;
};

}  // namespace velun
