// SPDX-License-Identifier: GPL-3.0-or-later
// Passes everything on to the helper program in VELUN_THROTTLED_PROGRAM, but a second of audio only
// after VELUN_THROTTLED_SECONDS seconds, like a machine that is too slow.
#include "platform/speech/helper/recognizer_message.h"

#include <array>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <optional>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

using velun::RecognizerMessage;

namespace {

constexpr double kBytesPerSecond = 16000 * sizeof(float);

/// Starts the program with a pipe as its input, and returns the other end of the pipe.
int startProgram(const char* program) {
  std::array<int, 2> ends{};
  if (pipe(ends.data()) != 0) std::exit(1);
  if (fork() == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    dup2(ends[0], STDIN_FILENO);
    close(ends[0]);
    close(ends[1]);
    execl(program, program, nullptr);
    _exit(1);
  }
  close(ends[0]);
  return ends[1];
}

bool writeAll(int file, const QByteArray& bytes) {
  for (qsizetype at = 0; at < bytes.size();) {
    const ssize_t count =
        write(file, bytes.constData() + at, static_cast<std::size_t>(bytes.size() - at));
    if (count < 0) return false;
    at += count;
  }
  return true;
}

}  // namespace

int main() {
  const char* program = std::getenv("VELUN_THROTTLED_PROGRAM");
  const char* seconds = std::getenv("VELUN_THROTTLED_SECONDS");
  if (!program || !seconds) return 2;
  const double slowness = std::atof(seconds);
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  const int output = startProgram(program);
  velun::RecognizerMessageReader reader;
  std::array<char, 16384> buffer{};
  for (ssize_t count = 0; (count = read(STDIN_FILENO, buffer.data(), buffer.size())) > 0;) {
    reader.append(std::span(buffer.data(), static_cast<std::size_t>(count)));
    while (const std::optional<RecognizerMessage> message = reader.next()) {
      if (message->kind == RecognizerMessage::Kind::audio) {
        std::this_thread::sleep_for(std::chrono::duration<double>(
            slowness * static_cast<double>(message->body.size()) / kBytesPerSecond));
      }
      if (!writeAll(output, velun::encoded(message->kind, message->body))) return 1;
    }
  }
  close(output);
  wait(nullptr);
  return 0;
}
