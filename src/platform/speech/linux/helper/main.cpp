// SPDX-License-Identifier: GPL-3.0-or-later
// The program in which neural recognition runs: sound comes in over the standard input, results go
// out over the standard output (recognizer_message.h). Started by velun, and ends with it.
#include "platform/speech/linux/helper/recognizer_service.h"

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
  // It must not stay behind, even when it is busy loading a model and reads nothing. The parent may
  // have ended before this was asked for.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != std::atoi(argv[1])) return 1;
  std::signal(SIGPIPE, SIG_IGN);
  // What the library might print must not come between the results.
  const int output = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 3);
  if (output < 0 || dup2(STDERR_FILENO, STDOUT_FILENO) < 0) return 1;
  const QString self = QFileInfo("/proc/self/exe").symLinkTarget();
  velun::RecognizerService service(STDIN_FILENO, output, QFileInfo(self).absolutePath());
  return service.run();
}
