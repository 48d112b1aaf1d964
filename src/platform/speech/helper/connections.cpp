// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/connections.h"

#include "platform/foundation/passed_descriptor.h"
#include "platform/speech/helper/recognizer_service.h"

#include <fcntl.h>
#include <optional>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace velun {

namespace {

/// Serves one connection until it ends, and closes it.
void serve(FileDescriptor input, FileDescriptor output, const QString& programFolder) {
  RecognizerService(input.number(), output.number(), programFolder).run();
}

[[noreturn]] void serveOthers(const FileDescriptor& control, const QString& programFolder) {
  while (std::optional<FileDescriptor> input = receiveDescriptor(control)) {
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
