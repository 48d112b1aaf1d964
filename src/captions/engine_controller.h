// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/speech_recognizing.h"
#include "captions/engine_chain.h"

#include <memory>
#include <optional>
#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <QString>
#include <stop_token>
#include <vector>

namespace velun {

class AppSettings;

/// Starts, stops and restarts the speech engine as the user wants captions on or off. Main thread.
class EngineController final : public QObject {
  Q_OBJECT

 public:
  /// `settings` must outlive the controller.
  EngineController(const AppSettings& settings, std::unique_ptr<SpeechRecognizing> engine);
  /// Destroys the engine, and with it the threads of a run that has not stopped. The program's
  /// services may go then, even if an operation still waits.
  ~EngineController() override;

  /// The user wants captions on; true from the command on, before the engine has started.
  bool isRunning() const { return isRunning_; }
  /// An engine operation is queued or running. `start` does nothing meanwhile.
  bool isTransitioning() const { return isTransitioning_; }
  /// In transition, other than by a start that is downloading a model. `stop` does nothing
  /// meanwhile. Ends within seconds, so the user can wait for it; nobody has to wait for a
  /// download.
  bool isSwitching() const;
  /// Captions are off and the engine has stopped.
  bool isStopped() const { return !isRunning_ && !isTransitioning_; }

  /// Turns captions on.
  void start();
  /// Restarts the engine, if captions are on, with the settings of the moment at which it starts.
  /// Cancels a download, which the next start of that model resumes.
  void restart();
  /// Turns captions off. The engine stops later; its last results still arrive. Cancels a download.
  void stop();
  /// As `stop`, but also while switching; completes when the engine has stopped. Starts that
  /// are queued are dropped, one that is running is cancelled.
  QCoro::Task<> shutdown();
  /// Completes every pending `shutdown` and starts nothing more. The program is about to end.
  void abandon() { chain_.close(); }

  /// The captions wait for the chosen device, which is not connected.
  bool isDeviceMissing() const { return missingInput().has_value(); }
  /// The input of that device.
  std::optional<AudioInput> missingInput() const { return engine_->missingInput(); }

  /// Band levels in dB of the input, or empty while captions are off.
  std::vector<float> meterBands() const;

 Q_SIGNALS:
  void isRunningChanged();
  void isTransitioningChanged();
  void isSwitchingChanged();
  void isDeviceMissingChanged();
  /// The engine reported an event.
  void eventOccurred(const velun::SpeechRecognitionEvent& event);
  /// This machine cannot keep up with the audio.
  void tooSlow();
  /// A start failed and captions are off. Without a failure it was cancelled.
  void startFailed(const std::optional<velun::FailureEvent>& failure);
  /// `stop` or `shutdown` has stopped the engine, and all its results have arrived. The transition
  /// ends afterwards.
  void stopped();

 private:
  static QCoro::Task<> runRestart(QPointer<EngineController> self, std::stop_token stop);
  static QCoro::Task<> runStop(QPointer<EngineController> self);
  OneShot<bool> beginShutdown();
  /// What the settings of this moment say.
  void setRunning(bool isRunning);
  void setTransitioning(bool isTransitioning);
  void reportSwitching();

  const AppSettings& settings_;
  /// Not shared with the running operation: one that waits when the program ends never goes on, and
  /// would keep the engine's threads beyond the services that they use.
  std::unique_ptr<SpeechRecognizing> engine_;
  bool isRunning_ = false;
  bool isTransitioning_ = false;
  bool reportedSwitching_ = false;
  EngineChain chain_;
};

}  // namespace velun
