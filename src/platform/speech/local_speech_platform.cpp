// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/local_speech_platform.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "platform/speech/locale_equivalence.h"

#include <algorithm>
#include <utility>

namespace velun {

namespace {

QStringList idsOf(const std::vector<SpeechRecognizer>& recognizers) {
  QStringList ids;
  for (const SpeechRecognizer& each : recognizers) ids << each.id;
  return ids;
}

}  // namespace

LocalSpeechPlatform::LocalSpeechPlatform(Providers providers, Clock& clock,
                                         std::shared_ptr<const RecognizerPreferences> preferences,
                                         Machine machine, std::shared_ptr<VoiceProvider> voices)
    : providers_(std::move(providers)),
      clock_(clock),
      preferences_(std::move(preferences)),
      machine_(machine),
      voices_(std::move(voices)) {
  connect(preferences_.get(), &RecognizerPreferences::choiceChanged, this,
          &LocalSpeechPlatform::updateChoice);
}

QStringList LocalSpeechPlatform::locales() const {
  QStringList all;
  for (const auto& provider : providers_) all += provider->supportedLocales();
  all.removeDuplicates();
  // Among the locales of one language, prefer one that needs no download.
  std::stable_partition(all.begin(), all.end(),
                        [this](const QString& locale) { return isInstalled(locale); });
  return all;
}

bool LocalSpeechPlatform::isInstalled(const QString& locale) const {
  return std::any_of(providers_.begin(), providers_.end(),
                     [&locale](const auto& provider) { return provider->isInstalled(locale); });
}

std::shared_ptr<RecognizerProvider> LocalSpeechPlatform::providerOf(const QString& locale,
                                                                    const QString& id) const {
  for (const auto& provider : providers_) {
    for (const RecognizerCandidate& candidate : provider->candidates(locale)) {
      if (candidate.id == id) return provider;
    }
  }
  return nullptr;
}

std::vector<RecognizerCandidate> LocalSpeechPlatform::candidates(const QString& locale) const {
  std::vector<RecognizerCandidate> all;
  const QString choice = preferences_->choice(locale);
  for (const auto& provider : providers_) {
    for (RecognizerCandidate& candidate : provider->candidates(locale)) {
      candidate.isChosen = candidate.id == choice;
      const std::optional<double> factor = preferences_->realTimeFactor(candidate.id);
      candidate.isSuitable = isSuitable(candidate, machine_, factor);
      all.push_back(std::move(candidate));
    }
  }
  sortByUse(all);
  return all;
}

std::shared_ptr<SpeechModelOffer> LocalSpeechPlatform::offer(const QString& locale,
                                                             const QString& id) {
  const std::shared_ptr<RecognizerProvider> provider = providerOf(locale, id);
  return provider ? provider->offer(locale, id) : nullptr;
}

QCoro::Task<QStringList> LocalSpeechPlatform::supportedLocales() {
  co_return locales();
}

std::optional<SpeechSupport> LocalSpeechPlatform::support(const QString& localeID) {
  const std::optional<QString> locale = equivalentLocale(localeID, locales());
  if (!locale) return std::nullopt;
  SpeechSupport support{.locale = *locale, .offer = nullptr};
  if (isInstalled(*locale)) return support;
  for (const RecognizerCandidate& candidate : candidates(*locale)) {
    if (candidate.needsAgreement) {
      support.needsAgreement = true;
      continue;
    }
    support.offer = offer(*locale, candidate.id);
    if (support.offer) break;
  }
  if (support.offer) support.needsAgreement = false;
  return support;
}

std::unique_ptr<SpeechRun> LocalSpeechPlatform::start(const QString& locale,
                                                      std::shared_ptr<SpeechInput> input) {
  std::vector<SpeechRecognizer> recognizers = installedRecognizers(locale);
  if (recognizers.empty()) {
    throw Failure(
        L("There is no recognizer for this language on this computer. Choose another language, or "
          "download a speech model in Settings.",
          "이 컴퓨터에는 이 언어의 인식기가 없습니다. 다른 언어를 선택하거나 설정에서 음성 모델을 "
          "다운로드하세요."));
  }
  const QStringList ids = idsOf(recognizers);
  auto run = std::make_unique<LocalSpeechRun>(std::move(recognizers), std::move(input), clock_,
                                              voices_ ? voices_->makePrinter() : nullptr);
  connect(run.get(), &LocalSpeechRun::recognizerFailed, this,
          [this, locale](const QString& id) { Q_EMIT recognizerFailed(id, locale); });
  std::erase_if(runs_, [](const Running& each) { return each.run.isNull(); });
  runs_.push_back({run.get(), locale, ids});
  return run;
}

void LocalSpeechPlatform::updateRuns() {
  for (Running& each : runs_) {
    if (each.run) update(each, false);
  }
}

void LocalSpeechPlatform::forgetFailure(const QString& id) {
  for (const Running& each : runs_) {
    if (each.run) each.run->forgetFailure(id);
  }
}

void LocalSpeechPlatform::showBriefly(const QString& notice) {
  for (const Running& each : runs_) {
    if (each.run) Q_EMIT each.run->noticedBriefly(notice);
  }
}

void LocalSpeechPlatform::update(Running& running, bool isChosen) {
  std::vector<SpeechRecognizer> recognizers = installedRecognizers(running.locale);
  // It would start without a part that it is about to get.
  std::erase_if(recognizers, [this, &running](const SpeechRecognizer& each) {
    return !running.recognizers.contains(each.id) &&
           providerOf(running.locale, each.id)->isBeingCompleted(running.locale, each.id);
  });
  const QStringList ids = idsOf(recognizers);
  // The state of a model changes often while it is downloaded.
  if ((ids == running.recognizers && !isChosen) || ids.isEmpty()) return;
  running.recognizers = ids;
  running.run->setRecognizers(std::move(recognizers));
}

void LocalSpeechPlatform::updateChoice(const QString& locale) {
  for (Running& each : runs_) {
    if (!each.run || each.locale != locale) continue;
    // The user wants it, although it failed.
    each.run->forgetFailure(preferences_->choice(locale));
    update(each, true);
  }
}

std::vector<SpeechRecognizer> LocalSpeechPlatform::installedRecognizers(
    const QString& locale) const {
  std::vector<SpeechRecognizer> recognizers;
  for (const RecognizerCandidate& each : candidates(locale)) {
    if (!each.isInstalled) continue;
    recognizers.push_back(
        {each.id, each.title, providerOf(locale, each.id)->makeFactory(locale, each.id)});
  }
  return recognizers;
}

}  // namespace velun
