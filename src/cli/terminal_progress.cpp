// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/terminal_progress.h"

#include "language/localization.h"

#include <cmath>
#include <unistd.h>

namespace velun {

namespace {

/// Seconds. Before, the speed says nothing.
constexpr double kMinElapsed = 3;

/// "1:02:03" or "2:03"
QString clockText(double time) {
  const auto seconds = static_cast<qlonglong>(time);
  const QString ending = QStringLiteral("%1:%2")
                             .arg(seconds / 60 % 60, seconds < 3600 ? 1 : 2, 10, QLatin1Char('0'))
                             .arg(seconds % 60, 2, 10, QLatin1Char('0'));
  return seconds < 3600 ? ending : QStringLiteral("%1:%2").arg(seconds / 3600).arg(ending);
}

QString leftText(double seconds) {
  constexpr double kMinute = 60;
  if (seconds < kMinute) {
    return L("%1 s left", "%1초 남음").arg(std::max(1, static_cast<int>(std::lround(seconds))));
  }
  return L("%1 min left", "%1분 남음").arg(std::lround(seconds / kMinute));
}

}  // namespace

TerminalProgress::TerminalProgress(std::FILE* out) : out_(out), isTerminal_(isatty(fileno(out))) {}

void TerminalProgress::show(double position, std::optional<double> duration, double elapsed) {
  if (!isTerminal_) return;
  const QString next = text(position, duration, elapsed);
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

QString TerminalProgress::text(double position, std::optional<double> duration, double elapsed) {
  if (!duration || *duration <= 0) return clockText(position);
  const QString place =
      L("%1 of %2", "%2 중 %1").arg(clockText(std::min(position, *duration)), clockText(*duration));
  if (elapsed < kMinElapsed || position <= 0) return place;
  const double left = std::max(0.0, *duration - position) * elapsed / position;
  return place + QStringLiteral(", ") + leftText(left);
}

}  // namespace velun
