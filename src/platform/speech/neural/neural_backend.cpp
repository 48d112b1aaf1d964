// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/neural/neural_backend.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "platform/speech/helper/result_codec.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <numeric>
#include <utility>

namespace velun {

using Kind = RecognizerMessage::Kind;

namespace {

/// Half a second. Long audio is sent in pieces, so that the helper replies in between.
constexpr std::size_t kMaxPieceSamples = 8000;
constexpr double kSampleRate = 16000;

Failure brokenFile(const FileFault& fault) {
  const QString file = fault.description();
  if (fault.code == 0) {
    return Failure(L(
        QString("A file of the speech recognizer is missing or damaged (%1). Install Velun again.")
            .arg(file),
        QString("음성 인식기의 파일이 없거나 손상되었습니다(%1). Velun을 다시 설치하세요.")
            .arg(file)));
  }
  return Failure(L(QString("A file of the speech recognizer cannot be read (%1). Check the "
                           "permissions of the file and its disk, or install Velun again.")
                       .arg(file),
                   QString("음성 인식기의 파일을 읽을 수 없습니다(%1). 파일의 권한과 디스크를 "
                           "확인하거나 Velun을 다시 설치하세요.")
                       .arg(file)));
}

Failure notStarted(const HelperEnded& end) {
  if (const std::optional<FileFault>& fault = end.fileFault()) return brokenFile(*fault);
  const QString reason = QString::fromUtf8(end.what());
  if (reason.isEmpty()) {
    return Failure(
        L("The speech recognizer couldn’t be started. Try again, or choose another "
          "language.",
          "음성 인식기를 시작할 수 없습니다. 다시 시도하거나 다른 언어를 선택하세요."));
  }
  return Failure(
      L(QString("The speech recognizer couldn’t be started (%1). Try again, or choose another "
                "language.")
            .arg(reason),
        QString("음성 인식기를 시작할 수 없습니다(%1). 다시 시도하거나 다른 언어를 선택하세요.")
            .arg(reason)));
}

Failure unexpectedEnd(const HelperEnded& end) {
  qCWarning(helperLog, "The speech recognizer ended (%s).", end.what());
  return Failure(L("The speech recognizer stopped unexpectedly. Start captions again.",
                   "음성 인식기가 예기치 않게 중단되었습니다. 자막을 다시 시작하세요."));
}

}  // namespace

NeuralBackend::NeuralBackend(HelperProgram program, RecognizerSettings settings,
                             std::chrono::milliseconds timeout, DecodingSpeed::Report report)
    : helper_(std::move(program), std::move(settings), timeout), report_(std::move(report)) {}

NeuralBackend::~NeuralBackend() {
  const std::optional<double> factor = speed_.realTimeFactor();
  if (factor && report_) report_(*factor);
}

void NeuralBackend::expectRecording() {
  helper_.expectRecording();
  // The speed of a recording, whose phrases are heard side by side, is not that of live speech.
  report_ = {};
}

void NeuralBackend::load() {
  try {
    helper_.start();
  } catch (const HelperEnded& end) {
    throw notStarted(end);
  }
}

void NeuralBackend::acceptAudio(std::span<const float> samples) {
  try {
    for (std::size_t at = 0; at < samples.size(); at += kMaxPieceSamples) {
      const auto piece = samples.subspan(at, std::min(kMaxPieceSamples, samples.size() - at));
      const QByteArray body(reinterpret_cast<const char*>(piece.data()),
                            static_cast<qsizetype>(piece.size_bytes()));
      helper_.process().send(Kind::audio, body);
      undecodedPieces_.push_back(piece.size());
    }
  } catch (const HelperEnded& end) {
    throw unexpectedEnd(end);
  }
}

std::vector<TranscriptionResult> NeuralBackend::poll() {
  try {
    takeArrived();
  } catch (const HelperEnded& end) {
    // Return the earlier results; the next call throws again.
    if (results_.empty()) throw unexpectedEnd(end);
  }
  return std::exchange(results_, {});
}

void NeuralBackend::finalize() {
  try {
    helper_.process().send(Kind::finalize);
    while (true) {
      const RecognizerMessage message = helper_.process().receive();
      if (message.kind == Kind::settled) break;
      take(message);
    }
  } catch (const HelperEnded& end) {
    throw unexpectedEnd(end);
  }
  undecodedPieces_.clear();
  isInPhrase_ = false;
}

void NeuralBackend::skip() {
  try {
    helper_.process().send(Kind::skip);
  } catch (const HelperEnded& end) {
    throw unexpectedEnd(end);
  }
}

double NeuralBackend::undecodedSeconds() const {
  const std::size_t samples =
      std::accumulate(undecodedPieces_.begin(), undecodedPieces_.end(), std::size_t(0));
  return static_cast<double>(samples) / kSampleRate;
}

void NeuralBackend::awaitDecoding(std::chrono::milliseconds atMost) {
  try {
    helper_.process().awaitMessage(atMost);
  } catch (const HelperEnded& end) {
    throw unexpectedEnd(end);
  }
}

QString NeuralBackend::adviceIfTooSlow() const {
  return L("This computer is too slow for this speech model. Choose a smaller one in Settings.",
           "이 컴퓨터에는 이 음성 모델이 너무 큽니다. 설정에서 더 작은 모델을 선택하세요.");
}

void NeuralBackend::takeArrived() {
  HelperProcess& helper = helper_.process();
  while (const std::optional<RecognizerMessage> message = helper.tryReceive()) take(*message);
}

void NeuralBackend::takeHeard(const QByteArray& body) {
  isInPhrase_ = body.startsWith('\1');
  if (undecodedPieces_.empty()) return;
  const double audio = static_cast<double>(undecodedPieces_.front()) / kSampleRate;
  undecodedPieces_.pop_front();
  std::uint32_t micros = 0;
  if (body.size() != 1 + sizeof micros) return;
  std::memcpy(&micros, body.constData() + 1, sizeof micros);
  speed_.add(audio, micros / 1e6);
}

void NeuralBackend::take(const RecognizerMessage& message) {
  switch (message.kind) {
    case Kind::draft:
      results_.push_back(decodedResult(message.body, false));
      break;
    case Kind::final:
      results_.push_back(decodedResult(message.body, true));
      break;
    case Kind::heard:
      takeHeard(message.body);
      break;
    default:
      break;
  }
}

}  // namespace velun
