// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/neural/voice_helper.h"

#include "language/localization.h"

#include <cstring>
#include <utility>

namespace velun {

using Kind = RecognizerMessage::Kind;

namespace {

constexpr double kSampleRate = 16000;
constexpr int kMaxAttempts = 2;

QString failureText() {
  return L(
      "Speakers are not told apart any more, because their model does not work. Install it again "
      "under Languages & Models.",
      "화자 모델이 작동하지 않아 더 이상 화자를 구분하지 않습니다. ‘언어 및 모델’에서 다시 "
      "설치하세요.");
}

}  // namespace

VoiceHelper::VoiceHelper(HelperProgram program, RecognizerSettings settings, VoiceLimits limits,
                         std::shared_ptr<const void> use, std::chrono::milliseconds replyTimeout,
                         std::chrono::milliseconds loadTimeout)
    : helper_(std::move(program), std::move(settings), replyTimeout, loadTimeout),
      limits_(limits),
      use_(std::move(use)) {}

std::optional<VoicePrint> VoiceHelper::print(std::span<const float> samples) {
  if (failure_) return std::nullopt;
  for (int attempt = 1; attempt <= kMaxAttempts; ++attempt) {
    try {
      return exchange(samples);
    } catch (const HelperEnded& end) {
      helper_.end();
      if (helper_.isCancelled()) return std::nullopt;
      // It also ends with the thread that started it, when another recognizer takes over.
      qCWarning(helperLog, "The speaker model has stopped (%s).", end.what());
    }
  }
  failure_ = failureText();
  return std::nullopt;
}

std::optional<VoicePrint> VoiceHelper::exchange(std::span<const float> samples) {
  if (!helper_.isThere()) helper_.start();
  const auto bytes = static_cast<qsizetype>(samples.size_bytes());
  helper_.process().send(Kind::speech,
                         QByteArray(reinterpret_cast<const char*>(samples.data()), bytes));
  while (true) {
    const RecognizerMessage message = helper_.process().receive();
    if (message.kind != Kind::voice) continue;
    if (message.body.isEmpty()) return std::nullopt;
    VoicePrint print{.values = {}, .seconds = 0, .limits = limits_};
    print.values.resize(static_cast<std::size_t>(message.body.size()) / sizeof(float));
    std::memcpy(print.values.data(), message.body.constData(), print.values.size() * sizeof(float));
    print.seconds = static_cast<double>(samples.size()) / kSampleRate;
    return print;
  }
}

}  // namespace velun
