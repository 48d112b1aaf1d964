// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdio>
#include <optional>
#include <QString>

namespace velun {

/// One line at the bottom of a terminal that says how far a recording is captioned; nothing is
/// written to a file. Main thread.
class TerminalProgress {
 public:
  /// `out` must outlive the progress.
  explicit TerminalProgress(std::FILE* out);
  ~TerminalProgress() { erase(); }
  Q_DISABLE_COPY_MOVE(TerminalProgress)

  /// `position` and `duration` in seconds of the recording, `elapsed` in seconds since the start.
  void show(double position, std::optional<double> duration, double elapsed);

  /// Call before something else is written to the terminal.
  void erase();

 private:
  std::FILE* out_;
  bool isTerminal_;
  QString shown_;
};

}  // namespace velun
