// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/byte_channel.h"

#include <array>
#include <cerrno>
#include <poll.h>
#include <sys/socket.h>

namespace velun {

namespace {

/// Maximum read at once.
constexpr std::size_t kMaxReadBytes = 64 * 1024;

/// Maximum number of reads after the input was closed.
constexpr int kMaxLastReads = 16;

}  // namespace

ByteChannel::Event ByteChannel::exchange(std::span<const char>& input, QByteArray& output,
                                         std::chrono::milliseconds timeout) const {
  const auto inputEvents = static_cast<short>(input.empty() ? 0 : POLLOUT);
  // Reads while writing: otherwise both sides could wait for each other. A negative descriptor is
  // ignored, so that an ended reader of input that we do not have does not wake us again and again.
  std::array<pollfd, 2> polled{
      {{input.empty() ? -1 : input_.number(), inputEvents, 0}, {output_.number(), POLLIN, 0}}};
  const int ready = ::poll(polled.data(), polled.size(), static_cast<int>(timeout.count()));
  if (ready < 0) return errno == EINTR ? Event::transferred : Event::ended;
  if (ready == 0) return Event::timedOut;
  if (polled[1].revents != 0 && !read(output)) return Event::ended;
  if (polled[0].revents != 0 && !write(input)) {
    // The first process has ended. What the last one wrote before may still be there.
    for (int i = 0; i < kMaxLastReads && read(output); ++i) {
    }
    return Event::ended;
  }
  return Event::transferred;
}

bool ByteChannel::isIdle() const {
  pollfd output{output_.number(), POLLIN, 0};
  return ::poll(&output, 1, 0) == 0;
}

void ByteChannel::interrupt() const {
  ::shutdown(output_.number(), SHUT_RDWR);
}

bool ByteChannel::read(QByteArray& output) const {
  std::array<char, kMaxReadBytes> block;
  const ssize_t count = ::recv(output_.number(), block.data(), block.size(), MSG_DONTWAIT);
  if (count < 0) return errno == EAGAIN || errno == EINTR;
  output.append(block.data(), count);
  return count > 0;
}

bool ByteChannel::write(std::span<const char>& input) const {
  const ssize_t count =
      ::send(input_.number(), input.data(), input.size(), MSG_NOSIGNAL | MSG_DONTWAIT);
  if (count < 0) return errno == EAGAIN || errno == EINTR;
  input = input.subspan(static_cast<std::size_t>(count));
  return true;
}

}  // namespace velun
