// SPDX-License-Identifier: GPL-3.0-or-later
// The program that runs neural recognition: reads audio from the standard input and writes results
// to the standard output (recognizer_message.h). Started by velun, and ends with it.
#include "platform/speech/helper/recognizer_service.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <QFileInfo>
#include <sys/prctl.h>
#include <unistd.h>

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("velun-recognizer is started by velun\n", stderr);
    return 2;
  }
  // End with the parent, even while loading a model. The parent may have ended before this call.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != std::atoi(argv[1])) return 1;
  std::signal(SIGPIPE, SIG_IGN);
  // Output that sherpa-onnx prints must not get between the results.
  const int output = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
  if (output < 0 || dup2(STDERR_FILENO, STDOUT_FILENO) < 0) return 1;
  const QString self = QFileInfo("/proc/self/exe").symLinkTarget();
  velun::RecognizerService service(STDIN_FILENO, output, QFileInfo(self).absolutePath());
  return service.run();
}
