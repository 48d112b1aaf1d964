// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/local_speech_analyzer.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "platform/speech/decode_worker.h"

namespace velun {

using namespace std::chrono_literals;

LocalSpeechAnalyzer::LocalSpeechAnalyzer(std::shared_ptr<SpeechTranscriber> transcriber,
                                         RecognizerProvider::Factory factory,
                                         std::function<void()> onMinute, Clock& clock)
    : transcriber_(std::move(transcriber)),
      factory_(std::move(factory)),
      onMinute_(std::move(onMinute)),
      clock_(clock) {}

LocalSpeechAnalyzer::~LocalSpeechAnalyzer() {
  worker_.reset();
  ended_.complete({});
}

QCoro::Task<> LocalSpeechAnalyzer::start(std::shared_ptr<AnalyzerInputStream> input) {
  if (!factory_) {
    throw Failure(L("No speech model is installed for this language",
                    "이 언어의 음성 모델이 설치되어 있지 않습니다"));
  }
  input_ = std::move(input);
  DecodeWorker::Listener listener;
  // The transcriber's callbacks are copied at each call: they may be taken away in mid-run, also by
  // what they call.
  listener.onResult = [transcriber = transcriber_](const TranscriptionResult& result) {
    if (const auto onResult = transcriber->onResult) onResult(result);
  };
  listener.onFallingBehind = [transcriber = transcriber_](bool isBehind) {
    if (const auto onFallingBehind = transcriber->onFallingBehind) onFallingBehind(isBehind);
  };
  listener.onEnd = [this](const std::optional<QString>& error) {
    minute_.reset();
    ended_.complete({});
    if (const auto onEnd = transcriber_->onEnd) onEnd(error);
  };
  worker_ = std::make_unique<DecodeWorker>(factory_, input_, std::move(listener), &receiver_);
  if (onMinute_) minute_ = clock_.callAfter(1min, onMinute_);
  co_return;
}

QCoro::Task<> LocalSpeechAnalyzer::finalizeThroughEndOfInputSoFar() {
  if (!worker_) co_return;
  const OneShot<std::monostate> settled = worker_->finalizeSoFar();
  co_await settled;
}

QCoro::Task<> LocalSpeechAnalyzer::finalizeAndFinishThroughEndOfInput() {
  if (!worker_) co_return;
  const OneShot<std::monostate> ended = ended_;
  input_->finish();
  co_await ended;
}

QCoro::Task<> LocalSpeechAnalyzer::cancelAndFinishNow() {
  if (!worker_) co_return;
  const OneShot<std::monostate> ended = ended_;
  worker_->cancel();
  co_await ended;
}

}  // namespace velun
