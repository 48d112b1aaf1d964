// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/passed_descriptor.h"

#include "support/suite.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/socket.h>

using namespace velun;

namespace {

struct Sockets {
  Sockets() {
    std::array<int, 2> ends{-1, -1};
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) return;
    sender = FileDescriptor(ends[0]);
    receiver = FileDescriptor(ends[1]);
  }

  FileDescriptor sender;
  FileDescriptor receiver;
};

struct Pipe {
  Pipe() {
    std::array<int, 2> ends{-1, -1};
    if (::pipe2(ends.data(), O_CLOEXEC) != 0) return;
    reader = FileDescriptor(ends[0]);
    writer = FileDescriptor(ends[1]);
  }

  FileDescriptor reader;
  FileDescriptor writer;
};

}  // namespace

class PassedDescriptorTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void theReceivedDescriptorIsTheSameFile() {
    const Sockets sockets;
    Pipe pipe;
    QVERIFY(passDescriptor(sockets.sender, pipe.writer));
    pipe.writer.close();
    const std::optional<FileDescriptor> received = receiveDescriptor(sockets.receiver);
    QVERIFY(received);
    QCOMPARE(::write(received->number(), "x", 1), ssize_t{1});
    char read = 0;
    QCOMPARE(::read(pipe.reader.number(), &read, 1), ssize_t{1});
    QCOMPARE(read, 'x');
  }

  void theReceivedDescriptorIsClosedInOtherPrograms() {
    const Sockets sockets;
    const Pipe pipe;
    QVERIFY(passDescriptor(sockets.sender, pipe.writer));
    const std::optional<FileDescriptor> received = receiveDescriptor(sockets.receiver);
    QVERIFY(received);
    QVERIFY(::fcntl(received->number(), F_GETFD) & FD_CLOEXEC);
  }

  void eachOfSeveralArrivesAlone() {
    const Sockets sockets;
    const Pipe pipe;
    QVERIFY(passDescriptor(sockets.sender, pipe.reader));
    QVERIFY(passDescriptor(sockets.sender, pipe.writer));
    const std::optional<FileDescriptor> first = receiveDescriptor(sockets.receiver);
    const std::optional<FileDescriptor> second = receiveDescriptor(sockets.receiver);
    QVERIFY(first && second);
    QCOMPARE(::fcntl(first->number(), F_GETFL) & O_ACCMODE, O_RDONLY);
    QCOMPARE(::fcntl(second->number(), F_GETFL) & O_ACCMODE, O_WRONLY);
  }

  void bytesWithoutADescriptorAreSkipped() {
    const Sockets sockets;
    const Pipe pipe;
    QCOMPARE(::send(sockets.sender.number(), "xyz", 3, 0), ssize_t{3});
    QVERIFY(passDescriptor(sockets.sender, pipe.reader));
    QVERIFY(receiveDescriptor(sockets.receiver));
  }

  void aClosedSenderIsTheEnd() {
    Sockets sockets;
    sockets.sender.close();
    QVERIFY(!receiveDescriptor(sockets.receiver));
  }

  void aClosedReceiverIsAnError() {
    Sockets sockets;
    const Pipe pipe;
    sockets.receiver.close();
    QVERIFY(!passDescriptor(sockets.sender, pipe.reader));
    QCOMPARE(errno, EPIPE);
  }
};

QTEST_GUILESS_MAIN(PassedDescriptorTest)
#include "passed_descriptor_test.moc"
