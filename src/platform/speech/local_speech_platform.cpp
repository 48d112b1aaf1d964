// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/local_speech_platform.h"

#include "platform/speech/local_speech_analyzer.h"
#include "platform/speech/local_transcriber.h"
#include "platform/speech/locale_equivalence.h"

#include <algorithm>

namespace velun {

namespace {

/// What every recognizer takes.
constexpr AudioFormat kRecognizerFormat = {AudioFormat::Sample::float32, 16000, 1, true};

}  // namespace

LocalSpeechPlatform::LocalSpeechPlatform(Providers providers, Clock& clock)
    : providers_(std::move(providers)), clock_(clock) {}

QStringList LocalSpeechPlatform::locales() const {
  QStringList all;
  for (const auto& provider : providers_) all += provider->supportedLocales();
  all.removeDuplicates();
  // What works at once is preferred among the locales of one language.
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

QCoro::Task<std::optional<QString>> LocalSpeechPlatform::supportedLocale(QString equivalentTo) {
  co_return equivalentLocale(equivalentTo, locales());
}

std::shared_ptr<SpeechTranscriber> LocalSpeechPlatform::makeTranscriber(const QString& locale) {
  return std::make_shared<LocalTranscriber>(locale);
}

QCoro::Task<std::shared_ptr<AssetInstallationRequest>>
LocalSpeechPlatform::assetInstallationRequest(std::shared_ptr<SpeechTranscriber> transcriber) {
  std::shared_ptr<AssetInstallationRequest> request;
  const QString locale = transcriber->locale();
  if (installedProvider(locale)) co_return request;
  for (const auto& provider : providers_) {
    if (provider->supportedLocales().contains(locale)) {
      request = provider->installationRequest(locale);
    }
    if (request) break;
  }
  co_return request;
}

QCoro::Task<std::optional<AudioFormat>> LocalSpeechPlatform::bestAvailableAudioFormat(
    std::shared_ptr<SpeechTranscriber> compatibleWith) {
  const bool isKnown = locales().contains(compatibleWith->locale());
  std::optional<AudioFormat> format;
  if (isKnown) format = kRecognizerFormat;
  co_return format;
}

std::unique_ptr<SpeechAnalyzer> LocalSpeechPlatform::makeAnalyzer(
    std::shared_ptr<SpeechTranscriber> transcriber) {
  const QString locale = transcriber->locale();
  const std::shared_ptr<RecognizerProvider> best = installedProvider(locale);
  RecognizerProvider::Factory factory;
  if (best) factory = best->factory(locale);
  std::function<void()> fetchBetter;
  if (const auto better = betterProvider(locale); best && better) {
    fetchBetter = [better, locale] {
      better->fetchInBackground(locale);
    };
  }
  return std::make_unique<LocalSpeechAnalyzer>(std::move(transcriber), std::move(factory),
                                               std::move(fetchBetter), clock_);
}

}  // namespace velun
