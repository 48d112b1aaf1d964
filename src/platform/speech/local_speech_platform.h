// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "platform/speech/recognizer_provider.h"
#include "platform/speech/speech_platform.h"

#include <memory>
#include <vector>

namespace velun {

/// Speech services made of the recognizers of this machine. A language is recognized by the best
/// recognizer that is installed for it; a better one that is not is fetched in the background once
/// captions have run for a minute. Main thread.
class LocalSpeechPlatform final : public SpeechPlatform {
 public:
  using Providers = std::vector<std::shared_ptr<RecognizerProvider>>;

  /// `providers` from the best to the least. `clock` must outlive the platform and its analyzers.
  LocalSpeechPlatform(Providers providers, Clock& clock);

  QCoro::Task<QStringList> supportedLocales() override;
  QCoro::Task<std::optional<QString>> supportedLocale(QString equivalentTo) override;
  std::shared_ptr<SpeechTranscriber> makeTranscriber(const QString& locale) override;
  QCoro::Task<std::shared_ptr<AssetInstallationRequest>> assetInstallationRequest(
      std::shared_ptr<SpeechTranscriber> transcriber) override;
  QCoro::Task<std::optional<AudioFormat>> bestAvailableAudioFormat(
      std::shared_ptr<SpeechTranscriber> compatibleWith) override;
  std::unique_ptr<SpeechAnalyzer> makeAnalyzer(
      std::shared_ptr<SpeechTranscriber> transcriber) override;

 private:
  QStringList locales() const;
  /// The best provider that has `locale` installed; null when none has.
  std::shared_ptr<RecognizerProvider> installedProvider(const QString& locale) const;
  /// The best provider that knows `locale`, if it is better than what is installed.
  std::shared_ptr<RecognizerProvider> betterProvider(const QString& locale) const;

  Providers providers_;
  Clock& clock_;
};

}  // namespace velun
