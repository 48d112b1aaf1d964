// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/download_text.h"

#include "language/localization.h"
#include "platform/models/model_state.h"

#include <algorithm>
#include <QStringList>

namespace velun {

namespace {

constexpr double kMegabyte = 1'000'000;

std::int64_t megabytes(std::int64_t bytes) {
  return (bytes + 500'000) / 1'000'000;
}

QString timeLeft(int seconds) {
  if (seconds < 60) {
    return L(QStringLiteral("%1 s left").arg(seconds), QStringLiteral("%1초 남음").arg(seconds));
  }
  if (seconds < 3600) {
    const int minutes = (seconds + 59) / 60;
    return L(QStringLiteral("%1 min left").arg(minutes), QStringLiteral("%1분 남음").arg(minutes));
  }
  const int hours = (seconds + 3599) / 3600;
  return L(QStringLiteral("%1 h left").arg(hours), QStringLiteral("%1시간 남음").arg(hours));
}

QString amount(const ModelState& state) {
  const QString done = QString::number(megabytes(state.doneBytes));
  const QString total = megabytesText(state.totalBytes);
  return L(QStringLiteral("%1 of %2").arg(done, total),
           QStringLiteral("%2 중 %1MB").arg(done, total));
}

QString progress(const ModelState& state) {
  QStringList parts{amount(state)};
  if (state.bytesPerSecond > 0) {
    const QString speed = QString::number(state.bytesPerSecond / kMegabyte, 'f', 1);
    parts += L(speed + QStringLiteral(" MB/s"), QStringLiteral("초당 %1MB").arg(speed));
  }
  if (state.secondsLeft) parts += timeLeft(*state.secondsLeft);
  return parts.join(QStringLiteral(" · "));
}

QString startingText() {
  return L("Starting the download…", "다운로드를 시작하는 중…");
}

/// Connecting takes a while, too.
bool hasBegun(const ModelState& state) {
  return state.doneBytes > 0 || state.bytesPerSecond > 0 || state.secondsLeft;
}

}  // namespace

QString megabytesText(std::int64_t bytes) {
  const QString number = QString::number(std::max<std::int64_t>(1, megabytes(bytes)));
  const QString english = number + QStringLiteral(" MB");
  const QString korean = number + QStringLiteral("MB");
  return L(english, korean);
}

QString downloadText(const ModelState& state) {
  switch (state.stage) {
    case ModelState::Stage::absent:
      return {};
    case ModelState::Stage::waiting:
      return startingText();
    case ModelState::Stage::downloading:
      return hasBegun(state) ? progress(state) : startingText();
    case ModelState::Stage::paused:
      return L("Paused: ", "일시 정지됨: ") + amount(state);
    case ModelState::Stage::verifying:
      return L("Checking the download…", "다운로드를 확인하는 중…");
    case ModelState::Stage::failed:
      return state.failure;
    case ModelState::Stage::installed:
      return L("Installed", "설치됨");
  }
  return {};
}

}  // namespace velun
