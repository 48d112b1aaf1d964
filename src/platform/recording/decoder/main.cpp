// SPDX-License-Identifier: GPL-3.0-or-later
// The program that decodes recordings, which may come from anywhere: writes their sound to the
// standard output (recording_format.h). Started by velun, and ends with it.
#include "platform/recording/decoder/recording_decoder.h"

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <sys/prctl.h>
#include <unistd.h>

extern "C" {
#include <libavutil/log.h>
}

namespace {

using namespace velun;

/// False when nobody reads any more.
bool write(std::span<const std::byte> bytes) {
  while (!bytes.empty()) {
    const ssize_t count = ::write(STDOUT_FILENO, bytes.data(), bytes.size());
    if (count <= 0) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(count));
  }
  return true;
}

bool write(const RecordingHeader& header) {
  return write(std::as_bytes(std::span(&header, 1)));
}

bool write(std::uint32_t count) {
  return write(std::as_bytes(std::span(&count, 1)));
}

bool write(const std::vector<float>& samples) {
  return write(static_cast<std::uint32_t>(samples.size())) &&
         write(std::as_bytes(std::span(samples)));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("velun-decoder is started by velun\n", stderr);
    return 2;
  }
  // End with the parent. It may have ended before this call.
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  if (getppid() != std::atoi(argv[1])) return 1;
  std::signal(SIGPIPE, SIG_IGN);
  av_log_set_level(AV_LOG_QUIET);
  try {
    RecordingDecoder decoder(argv[2]);
    if (!write(RecordingHeader{.duration = decoder.duration().value_or(-1)})) return 1;
    while (true) {
      const std::vector<float> samples = decoder.next();
      if (samples.empty() && decoder.isBrokenOff()) return write(kBrokenOff) ? 0 : 1;
      if (!write(samples)) return 1;
      if (samples.empty()) return 0;
    }
  } catch (const DecodeFailure& failure) {
    return write(RecordingHeader{.fault = failure.fault}) ? 0 : 1;
  }
}
