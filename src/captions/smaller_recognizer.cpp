// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/smaller_recognizer.h"

#include "captions/update.h"
#include "platform/speech/recognizer_preferences.h"
#include "platform/speech/speech_platform.h"
#include "settings/app_settings.h"

#include <algorithm>

namespace velun {

SmallerRecognizer::SmallerRecognizer(SpeechPlatform& speech, RecognizerPreferences& preferences,
                                     const AppSettings& settings)
    : speech_(speech), preferences_(preferences), settings_(settings) {
  connect(&settings, &AppSettings::localeIDChanged, this, &SmallerRecognizer::withdraw);
  connect(&preferences, &RecognizerPreferences::choiceChanged, this, &SmallerRecognizer::withdraw);
}

void SmallerRecognizer::begin() {
  withdraw();
  used_.clear();
  const std::optional<SpeechSupport> support = speech_.support(settings_.localeID());
  if (!support) return;
  const std::vector<RecognizerCandidate> all = speech_.candidates(support->locale);
  const auto used = std::ranges::find_if(all, &RecognizerCandidate::isInstalled);
  if (used != all.end()) used_ = used->id;
}

void SmallerRecognizer::find() {
  set(smaller());
}

void SmallerRecognizer::withdraw() {
  set(std::nullopt);
}

void SmallerRecognizer::accept() {
  if (!offer_) return;
  const Offer accepted = *offer_;
  withdraw();
  if (accepted.isInstalled) preferences_.setChoice(accepted.locale, accepted.recognizer);
}

void SmallerRecognizer::set(const std::optional<Offer>& offer) {
  if (update(offer_, offer)) Q_EMIT changed();
}

/// An installed one if there is one.
std::optional<SmallerRecognizer::Offer> SmallerRecognizer::smaller() const {
  const std::optional<SpeechSupport> support = speech_.support(settings_.localeID());
  if (!support) return std::nullopt;
  std::vector<RecognizerCandidate> all = speech_.candidates(support->locale);
  // The measured speed may have changed the order meanwhile.
  const auto noted = std::ranges::find(all, used_, &RecognizerCandidate::id);
  const auto used =
      noted != all.end() ? noted : std::ranges::find_if(all, &RecognizerCandidate::isInstalled);
  if (used == all.end()) return std::nullopt;
  const std::int64_t bytes = used->modelBytes;
  std::erase_if(all, [bytes](const auto& each) { return each.modelBytes >= bytes; });
  if (all.empty()) return std::nullopt;
  const auto installed = std::ranges::find_if(all, &RecognizerCandidate::isInstalled);
  const RecognizerCandidate& found = installed == all.end() ? all.front() : *installed;
  return Offer{support->locale, found.id, found.title, found.isInstalled};
}

}  // namespace velun
