// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/better_captions.h"

#include "platform/foundation/preference_store.h"
#include "platform/models/model_store.h"
#include "platform/speech/speech_platform.h"
#include "settings/app_settings.h"

#include <algorithm>
#include <utility>

namespace velun {

namespace {

using Stage = ModelState::Stage;

const QString kDeclined = QStringLiteral("declinedRecognizers");
constexpr QChar kSeparator = u' ';

}  // namespace

BetterCaptions::BetterCaptions(SpeechPlatform& speech, ModelCatalogue catalogue, ModelStore& models,
                               const AppSettings& settings, PreferenceStore* preferences)
    : speech_(speech),
      catalogue_(std::move(catalogue)),
      store_(models),
      settings_(settings),
      preferences_(preferences) {
  connect(&models, &ModelStore::stateChanged, this, &BetterCaptions::update);
  connect(&settings, &AppSettings::localeIDChanged, this, &BetterCaptions::update);
  update();
}

bool BetterCaptions::isMetered() const {
  return store_.isMetered();
}

void BetterCaptions::update() {
  const std::optional<Offer> before = offer_;
  offer_ = find();
  if (!offer_) models_.clear();
  if (offer_ != before) Q_EMIT changed();
}

std::optional<BetterCaptions::Offer> BetterCaptions::find() {
  const std::optional<SpeechSupport> support = speech_.support(settings_.localeID());
  if (!support) return std::nullopt;
  const std::vector<RecognizerCandidate> all = speech_.candidates(support->locale);
  const bool isNeeded = std::ranges::none_of(all, &RecognizerCandidate::isInstalled);
  const auto best = std::ranges::find_if(all, [](const RecognizerCandidate& each) {
    return each.isInstalled || !each.needsAgreement;
  });
  if (best == all.end()) return findToAgree(all, support->locale);
  if (!isNeeded && !best->isSuitable) return std::nullopt;
  std::optional<Offer> offer = makeOffer(best->id, isNeeded, modelsOf(*best, support->locale));
  if (offer) offer->isSuitable = best->isSuitable;
  return offer;
}

std::optional<BetterCaptions::Offer> BetterCaptions::findToAgree(
    const std::vector<RecognizerCandidate>& all, const QString& locale) {
  for (const RecognizerCandidate& each : all) {
    std::optional<Offer> offer = makeOffer(each.id, true, modelsOf(each, locale));
    // The user has agreed already.
    if (offer && offer->state.stage != Stage::absent) return offer;
  }
  if (all.empty()) return std::nullopt;
  std::optional<Offer> offer = makeOffer(all.front().id, true, modelsOf(all.front(), locale));
  if (offer) offer->needsAgreement = true;
  return offer;
}

std::vector<Model> BetterCaptions::modelsOf(const RecognizerCandidate& recognizer,
                                            const QString& locale) const {
  const Model* model = catalogue_.find(recognizer.model);
  if (!model) return {};
  std::vector<Model> all{*model};
  const QString language = locale.section(u'_', 0, 0);
  if (const Model* marks = catalogue_.punctuationFor(*model, language)) all.push_back(*marks);
  return all;
}

std::optional<BetterCaptions::Offer> BetterCaptions::makeOffer(const QString& recognizer,
                                                               bool isNeeded,
                                                               const std::vector<Model>& models) {
  // The size stays the same while one of two models is already installed.
  const bool isGoingOn = offer_ && offer_->recognizer == recognizer && downloaded_ == recognizer;
  if (!isGoingOn) {
    models_.clear();
    for (const Model& model : models) {
      if (!store_.isInstalled(model)) models_.push_back(model);
    }
    if (models_.empty()) return std::nullopt;
  }
  Offer offer;
  offer.recognizer = recognizer;
  offer.isNeeded = isNeeded;
  offer.state = combinedState();
  offer.bytes = offer.state.totalBytes;
  if (offer.state.isBusy()) downloaded_ = recognizer;
  const bool isUntouched = offer.state.stage == Stage::absent || offer.state.stage == Stage::paused;
  if (!isNeeded && isUntouched && declined().contains(recognizer)) return std::nullopt;
  return offer;
}

ModelState BetterCaptions::combinedState() const {
  std::vector<ModelState> states;
  for (const Model& model : models_) states.push_back(store_.state(model));
  return combined(states);
}

void BetterCaptions::download() {
  if (!offer_ || offer_->needsAgreement) return;
  downloaded_ = offer_->recognizer;
  for (const Model& model : std::vector<Model>(models_)) store_.download(model);
}

void BetterCaptions::pause() {
  for (const Model& model : std::vector<Model>(models_)) store_.pause(model);
}

void BetterCaptions::cancel() {
  downloaded_.clear();
  for (const Model& model : std::vector<Model>(models_)) store_.cancel(model);
}

void BetterCaptions::decline() {
  if (!offer_) return;
  QStringList all = declined();
  if (!all.contains(offer_->recognizer)) all += offer_->recognizer;
  declinedNow_ = all;
  if (preferences_) preferences_->set(kDeclined, all.join(kSeparator));
  // Also withdraws a failed download; its part is deleted.
  cancel();
  update();
}

void BetterCaptions::acknowledge() {
  if (!offer_ || offer_->state.stage != Stage::installed) return;
  downloaded_.clear();
  update();
}

QStringList BetterCaptions::declined() const {
  if (!preferences_) return declinedNow_;
  return preferences_->get<QString>(kDeclined).value_or(QString()).split(kSeparator,
                                                                         Qt::SkipEmptyParts);
}

}  // namespace velun
