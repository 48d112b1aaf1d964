// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/lag_status.h"

#include "language/localization.h"

#include <algorithm>
#include <cmath>

namespace velun {

namespace {

/// Advice has more words.
constexpr double kAdviceSeconds = 20;

}  // namespace

void LagStatus::addSkipped(double seconds, double now) {
  const bool isSameLag = isBehind_ || now < skippedUntil_;
  skippedSeconds_ = isSameLag ? skippedSeconds_ + seconds : seconds;
  skippedUntil_ = now + kShownSeconds;
}

void LagStatus::advise(const QString& advice, double now) {
  advice_ = advice;
  adviceUntil_ = now + kAdviceSeconds;
}

std::optional<QString> LagStatus::text(double now) const {
  if (now >= skippedUntil_ && now >= adviceUntil_) {
    if (!isBehind_) return std::nullopt;
    return L("Recognition is falling behind", "인식이 늦어지고 있습니다");
  }
  const int seconds = std::max(1, static_cast<int>(std::lround(skippedSeconds_)));
  const QString skipped = L(QString("Skipped %1 s to catch up").arg(seconds),
                            QString("따라잡기 위해 %1초를 건너뛰었습니다").arg(seconds));
  return now < adviceUntil_ ? skipped + QStringLiteral(". ") + advice_ : skipped;
}

std::optional<double> LagStatus::nextChange(double now) const {
  std::optional<double> next;
  for (const double end : {skippedUntil_, adviceUntil_}) {
    if (end > now && (!next || end < *next)) next = end;
  }
  return next;
}

}  // namespace velun
