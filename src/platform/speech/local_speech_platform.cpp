// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/local_speech_platform.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "platform/speech/local_speech_run.h"
#include "platform/speech/locale_equivalence.h"

#include <algorithm>
#include <utility>

namespace velun {

using namespace std::chrono_literals;

LocalSpeechPlatform::LocalSpeechPlatform(Providers providers, Clock& clock)
    : providers_(std::move(providers)), clock_(clock) {}

QStringList LocalSpeechPlatform::locales() const {
  QStringList all;
  for (const auto& provider : providers_) all += provider->supportedLocales();
  all.removeDuplicates();
  // Among the locales of one language, prefer one that needs no download.
  std::stable_partition(all.begin(), all.end(), [this](const QString& locale) {
    return installedProvider(locale) != nullptr;
  });
  return all;
}

std::shared_ptr<RecognizerProvider> LocalSpeechPlatform::installedProvider(
    const QString& locale) const {
  for (const auto& provider : providers_) {
    if (provider->supportedLocales().contains(locale) && provider->isInstalled(locale)) {
      return provider;
    }
  }
  return nullptr;
}

std::shared_ptr<RecognizerProvider> LocalSpeechPlatform::betterProvider(
    const QString& locale) const {
  for (const auto& provider : providers_) {
    if (!provider->supportedLocales().contains(locale)) continue;
    return provider->isInstalled(locale) ? nullptr : provider;
  }
  return nullptr;
}

QCoro::Task<QStringList> LocalSpeechPlatform::supportedLocales() {
  co_return locales();
}

std::optional<SpeechSupport> LocalSpeechPlatform::support(const QString& localeID) {
  const std::optional<QString> locale = equivalentLocale(localeID, locales());
  if (!locale) return std::nullopt;
  SpeechSupport support{*locale, nullptr};
  if (installedProvider(*locale)) return support;
  for (const auto& provider : providers_) {
    if (!provider->supportedLocales().contains(*locale)) continue;
    support.offer = provider->offer(*locale);
    if (support.offer) break;
  }
  return support;
}

std::unique_ptr<SpeechRun> LocalSpeechPlatform::start(const QString& locale,
                                                      std::shared_ptr<SpeechInput> input) {
  const std::shared_ptr<RecognizerProvider> best = installedProvider(locale);
  if (!best) {
    throw Failure(L("No speech model is installed for this language",
                    "이 언어의 음성 모델이 설치되어 있지 않습니다"));
  }
  auto run = std::make_unique<LocalSpeechRun>(best->factory(locale), std::move(input), clock_);
  if (auto better = betterProvider(locale)) fetchLater(*run, std::move(better), locale);
  return run;
}

void LocalSpeechPlatform::fetchLater(SpeechRun& run, std::shared_ptr<RecognizerProvider> provider,
                                     const QString& locale) {
  std::shared_ptr<ScheduledCall> call = clock_.callAfter(
      1min, [provider = std::move(provider), locale] { provider->fetchInBackground(locale); });
  // The connection owns the call, which is cancelled when the run ends or is destroyed.
  QObject::connect(&run, &SpeechRun::ended, &run,
                   [call = std::move(call)]() mutable { call.reset(); });
}

}  // namespace velun
