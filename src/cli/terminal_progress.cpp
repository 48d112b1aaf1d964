// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/terminal_progress.h"

#include "captions/recording_progress.h"

#include <unistd.h>

namespace velun {

TerminalProgress::TerminalProgress(std::FILE* out) : out_(out), isTerminal_(isatty(fileno(out))) {}

void TerminalProgress::show(double position, std::optional<double> duration, double elapsed) {
  if (!isTerminal_) return;
  const QString next = recordingProgress(position, duration, elapsed);
  if (next == shown_) return;
  erase();
  std::fputs(qUtf8Printable(next), out_);
  std::fflush(out_);
  shown_ = next;
}

void TerminalProgress::erase() {
  if (shown_.isEmpty()) return;
  std::fputs("\r\x1b[K", out_);
  std::fflush(out_);
  shown_.clear();
}

}  // namespace velun
