// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/echo_canceller.h"
#include "audio/echo_removal.h"
#include "audio/speech_recognizing.h"

#include <array>
#include <cstddef>
#include <memory>

namespace velun {

/// Captions one target, or the computer's sound and a microphone at once, with an engine for each.
/// One that fails does not stop the other; the status says so for the rest of the run. Main thread.
class InputEngines final : public SpeechRecognizing {
  Q_OBJECT

 public:
  /// `second` is used only for runs of two targets; both engines use `canceller`, which is on in
  /// such runs. `clock` must outlive the engines.
  InputEngines(std::unique_ptr<SpeechRecognizing> first, std::unique_ptr<SpeechRecognizing> second,
               std::shared_ptr<EchoCanceller> canceller, Clock& clock);
  ~InputEngines() override;

  QCoro::Task<> start(QString localeID, CaptionTargets targets, std::stop_token stop = {}) override;
  QCoro::Task<> stop() override;
  bool isDownloading() const override;
  std::optional<AudioInput> missingInput() const override;
  /// The louder level of each band.
  std::vector<float> meterBands() const override;

 private:
  struct Part {
    std::unique_ptr<SpeechRecognizing> engine;
    AudioInput input = AudioInput::computer;
    /// Its start has begun and it has not failed since.
    bool isOn = false;
    std::optional<QString> status;
    std::optional<FailureEvent> failure;
  };

  void follow(Part& part);
  void handle(Part& part, const SpeechRecognitionEvent& event);
  void startFailed(Part& part, const std::exception_ptr& error);
  void failed(Part& part, const FailureEvent& failure);
  QCoro::Task<> stopFailed(std::size_t index, int run);
  bool isAnyOn() const;
  void updateStatus();

  std::array<Part, 2> parts_;
  std::shared_ptr<EchoCanceller> canceller_;
  EchoRemoval echo_;
  /// Of the present run.
  bool hasTwo_ = false;
  /// Also of the last words, while it stops.
  bool filtersEcho_ = false;
  bool isStarting_ = false;
  /// Counts starts and stops.
  int run_ = 0;
  std::optional<QString> shownStatus_;
};

}  // namespace velun
