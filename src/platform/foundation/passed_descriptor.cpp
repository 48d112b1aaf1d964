// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/passed_descriptor.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <sys/socket.h>
#include <sys/uio.h>

namespace velun {

namespace {

/// A message of one byte with room for one descriptor.
struct Message {
  Message() {
    header.msg_iov = &content;
    header.msg_iovlen = 1;
    header.msg_control = space.data();
    header.msg_controllen = space.size();
  }
  Q_DISABLE_COPY_MOVE(Message)

  char byte = 0;
  iovec content{&byte, 1};
  alignas(cmsghdr) std::array<char, CMSG_SPACE(sizeof(int))> space{};
  msghdr header{};
};

}  // namespace

bool passDescriptor(const FileDescriptor& socket, const FileDescriptor& passed) {
  Message message;
  cmsghdr* attached = CMSG_FIRSTHDR(&message.header);
  attached->cmsg_level = SOL_SOCKET;
  attached->cmsg_type = SCM_RIGHTS;
  attached->cmsg_len = CMSG_LEN(sizeof(int));
  const int number = passed.number();
  std::memcpy(CMSG_DATA(attached), &number, sizeof number);
  return ::sendmsg(socket.number(), &message.header, MSG_NOSIGNAL | MSG_DONTWAIT) == 1;
}

std::optional<FileDescriptor> receiveDescriptor(const FileDescriptor& socket) {
  while (true) {
    Message message;
    const ssize_t count = ::recvmsg(socket.number(), &message.header, MSG_CMSG_CLOEXEC);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return std::nullopt;
    const cmsghdr* attached = CMSG_FIRSTHDR(&message.header);
    if (!attached || attached->cmsg_type != SCM_RIGHTS) continue;
    int number = -1;
    std::memcpy(&number, CMSG_DATA(attached), sizeof number);
    return FileDescriptor(number);
  }
}

}  // namespace velun
