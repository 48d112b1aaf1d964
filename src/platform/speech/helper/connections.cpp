// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/connections.h"

#include "platform/speech/helper/recognizer_service.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/socket.h>
#include <sys/uio.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace velun {

namespace {

/// Waits for the next connection; nullopt at the end of the program.
std::optional<FileDescriptor> nextConnection(const FileDescriptor& control) {
  while (true) {
    char byte = 0;
    iovec content{&byte, 1};
    alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> space{};
    msghdr message{};
    message.msg_iov = &content;
    message.msg_iovlen = 1;
    message.msg_control = space.data();
    message.msg_controllen = space.size();
    const ssize_t count = ::recvmsg(control.number(), &message, MSG_CMSG_CLOEXEC);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return std::nullopt;
    const cmsghdr* header = CMSG_FIRSTHDR(&message);
    if (!header || header->cmsg_type != SCM_RIGHTS) continue;
    int passed = -1;
    std::memcpy(&passed, CMSG_DATA(header), sizeof passed);
    return FileDescriptor(passed);
  }
}

/// Serves one connection until it ends, and closes it.
void serve(FileDescriptor input, FileDescriptor output, const QString& programFolder) {
  RecognizerService(input.number(), output.number(), programFolder).run();
}

[[noreturn]] void serveOthers(const FileDescriptor& control, const QString& programFolder) {
  while (std::optional<FileDescriptor> input = nextConnection(control)) {
    FileDescriptor output(::fcntl(input->number(), F_DUPFD_CLOEXEC, 0));
    try {
      std::thread([input = *std::move(input), output = std::move(output), programFolder]() mutable {
        serve(std::move(input), std::move(output), programFolder);
      }).detach();
    } catch (const std::system_error&) {
      // Without a thread the connection is closed, which the program takes for an end.
    }
  }
  ::_exit(0);
}

}  // namespace

void serveConnections(FileDescriptor input, FileDescriptor output, FileDescriptor control,
                      const QString& programFolder) {
  std::thread others(
      [control = std::move(control), programFolder] { serveOthers(control, programFolder); });
  // On the main thread, a lonely connection needs the least memory.
  serve(std::move(input), std::move(output), programFolder);
  others.join();
  ::_exit(0);
}

}  // namespace velun
