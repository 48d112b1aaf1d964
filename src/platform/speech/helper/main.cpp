// SPDX-License-Identifier: GPL-3.0-or-later
// The program that runs recognition: reads audio from connections and writes results to them
// (recognizer_message.h). Started by velun, and ends with it. The first connection is the standard
// input and output; the others, which share its models, come over descriptor 3.
#include "platform/foundation/process_pipeline.h"
#include "platform/speech/helper/connections.h"

#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <QFileInfo>
#include <unistd.h>

int main() {
  using velun::FileDescriptor;
  FileDescriptor control(fcntl(velun::kControlDescriptor, F_DUPFD_CLOEXEC, 3));
  if (!control.isOpen()) {
    std::fputs("velun-recognizer is started by velun\n", stderr);
    return 2;
  }
  close(velun::kControlDescriptor);
  std::signal(SIGPIPE, SIG_IGN);
  FileDescriptor input(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3));
  FileDescriptor output(fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3));
  if (!input.isOpen() || !output.isOpen()) return 1;
  // Output that sherpa-onnx prints must not get between the results; and with the originals the
  // connection would stay open.
  if (dup2(STDERR_FILENO, STDOUT_FILENO) < 0 || dup2(STDERR_FILENO, STDIN_FILENO) < 0) return 1;
  const QString self = QFileInfo("/proc/self/exe").symLinkTarget();
  const QString folder = QFileInfo(self).absolutePath();
  velun::serveConnections(std::move(input), std::move(output), std::move(control), folder);
}
