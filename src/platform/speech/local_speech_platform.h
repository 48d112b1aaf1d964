// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/clock.h"
#include "platform/speech/recognizer_provider.h"
#include "platform/speech/speech_platform.h"

#include <memory>
#include <vector>

namespace velun {

/// Recognizes speech with the best recognizer that is installed for a language. A better one that
/// is not installed is downloaded in the background once captions have run for a minute. Main
/// thread.
class LocalSpeechPlatform final : public SpeechPlatform {
 public:
  using Providers = std::vector<std::shared_ptr<RecognizerProvider>>;

  /// `providers` from best to worst. `clock` must outlive the platform and its runs.
  LocalSpeechPlatform(Providers providers, Clock& clock);

  QCoro::Task<QStringList> supportedLocales() override;
  std::optional<SpeechSupport> support(const QString& localeID) override;
  std::unique_ptr<SpeechRun> start(const QString& locale,
                                   std::shared_ptr<SpeechInput> input) override;

 private:
  QStringList locales() const;
  /// The best provider that has `locale` installed; null when none has.
  std::shared_ptr<RecognizerProvider> installedProvider(const QString& locale) const;
  /// The best provider of `locale`, if it is not installed.
  std::shared_ptr<RecognizerProvider> betterProvider(const QString& locale) const;
  /// Downloads `provider`'s model if `run` has not ended after a minute.
  void fetchLater(SpeechRun& run, std::shared_ptr<RecognizerProvider> provider,
                  const QString& locale);

  Providers providers_;
  Clock& clock_;
};

}  // namespace velun
