// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "platform/speech/local_speech_run.h"
#include "platform/speech/recognizer_order.h"
#include "platform/speech/recognizer_preferences.h"
#include "platform/speech/recognizer_provider.h"
#include "platform/speech/speech_platform.h"
#include "platform/speech/speech_recognizer.h"
#include "platform/speech/voice_printer.h"

#include <memory>
#include <QObject>
#include <QPointer>
#include <vector>

namespace velun {

/// Recognizes speech with the first recognizer, in the order of use, that is installed for a
/// language. Its runs change to a better one when one is installed or chosen, and to the next when
/// one fails. Main thread.
class LocalSpeechPlatform final : public QObject, public SpeechPlatform {
  Q_OBJECT

 public:
  using Providers = std::vector<std::shared_ptr<RecognizerProvider>>;

  /// `providers` from best to worst. `clock` must outlive the platform and its runs. Without
  /// `voices`, results do not tell the voice.
  LocalSpeechPlatform(Providers providers, Clock& clock,
                      std::shared_ptr<const RecognizerPreferences> preferences =
                          std::make_shared<RecognizerPreferences>(),
                      Machine machine = Machine::present(),
                      std::shared_ptr<VoiceProvider> voices = nullptr);

  QCoro::Task<QStringList> supportedLocales() override;
  std::optional<SpeechSupport> support(const QString& localeID) override;
  std::vector<RecognizerCandidate> candidates(const QString& locale) const override;
  std::shared_ptr<SpeechModelOffer> offer(const QString& locale, const QString& id) override;
  std::unique_ptr<SpeechRun> start(const QString& locale,
                                   std::shared_ptr<SpeechInput> input) override;

  /// The installed models may have changed: the runs use the best recognizers that there are now.
  void updateRuns();

  /// The recognizer with this id was repaired: runs in which it failed may use it again.
  void forgetFailure(const QString& id);

  /// Shows `notice`, localized, in the status of the runs for a moment.
  void showBriefly(const QString& notice);

 Q_SIGNALS:
  /// The recognizer with this id, of this locale, could not be loaded or ended too often.
  void recognizerFailed(const QString& id, const QString& locale);

 private:
  struct Running {
    QPointer<LocalSpeechRun> run;
    QString locale;
    QStringList recognizers;  ///< the ids that it knows
  };

  void updateChoice(const QString& locale);
  /// `isChosen`: the user has changed the choice, so the order is passed on even if it is the same.
  void update(Running& running, bool isChosen);
  QStringList locales() const;
  /// In the order of use.
  std::vector<SpeechRecognizer> installedRecognizers(const QString& locale) const;
  bool isInstalled(const QString& locale) const;
  /// The provider of a candidate; null when there is none.
  std::shared_ptr<RecognizerProvider> providerOf(const QString& locale, const QString& id) const;

  Providers providers_;
  Clock& clock_;
  std::shared_ptr<const RecognizerPreferences> preferences_;
  Machine machine_;
  std::shared_ptr<VoiceProvider> voices_;
  std::vector<Running> runs_;  ///< some may have ended
};

}  // namespace velun
