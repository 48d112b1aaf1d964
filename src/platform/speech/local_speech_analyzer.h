// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "platform/foundation/one_shot.h"
#include "platform/speech/recognizer_provider.h"
#include "platform/speech/speech_platform.h"

#include <memory>
#include <QObject>
#include <variant>

namespace velun {

class DecodeWorker;

/// Runs one recognizer on a thread of its own over one stream of audio. The recognizer is loaded
/// on that thread while audio already gathers in the stream, so that nothing said meanwhile is
/// lost; a recognizer that cannot be loaded ends the results with its error.
class LocalSpeechAnalyzer final : public SpeechAnalyzer {
 public:
  /// `factory` may be empty: nothing is installed, and `start` says so. `onMinute` (may be empty)
  /// is called after a minute of running.
  LocalSpeechAnalyzer(std::shared_ptr<SpeechTranscriber> transcriber,
                      RecognizerProvider::Factory factory, std::function<void()> onMinute,
                      Clock& clock);
  ~LocalSpeechAnalyzer() override;

  QCoro::Task<> start(std::shared_ptr<AnalyzerInputStream> input) override;
  QCoro::Task<> finalizeThroughEndOfInputSoFar() override;
  QCoro::Task<> finalizeAndFinishThroughEndOfInput() override;
  QCoro::Task<> cancelAndFinishNow() override;

 private:
  std::shared_ptr<SpeechTranscriber> transcriber_;
  RecognizerProvider::Factory factory_;
  std::function<void()> onMinute_;
  Clock& clock_;
  std::shared_ptr<AnalyzerInputStream> input_;
  std::unique_ptr<ScheduledCall> minute_;
  OneShot<std::monostate> ended_;
  /// What the worker posts to: calls that wait for it are dropped with it.
  QObject receiver_;
  std::unique_ptr<DecodeWorker> worker_;
};

}  // namespace velun
