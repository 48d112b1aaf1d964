// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/better_captions.h"

#include "platform/foundation/preference_store.h"
#include "platform/models/model_store.h"
#include "platform/speech/speech_platform.h"
#include "settings/app_settings.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace velun {

namespace {

using Stage = ModelState::Stage;

const QString kDeclined = QStringLiteral("declinedRecognizers");
constexpr QChar kSeparator = u' ';

/// The stage to show for several downloads: a failure first, then what is still going on.
Stage combined(const std::vector<ModelState>& states) {
  const auto isAny = [&states](Stage stage) {
    return std::ranges::any_of(states, [stage](const auto& state) { return state.stage == stage; });
  };
  for (const Stage stage : {Stage::failed, Stage::downloading, Stage::verifying, Stage::waiting,
                            Stage::paused, Stage::absent}) {
    if (isAny(stage)) return stage;
  }
  return Stage::installed;
}

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
  if (all.empty()) return std::nullopt;
  const RecognizerCandidate& best = all.front();
  const bool isNeeded = std::ranges::none_of(all, &RecognizerCandidate::isInstalled);
  if (!isNeeded && !best.isSuitable) return std::nullopt;
  return makeOffer(best.id, isNeeded, modelsOf(best, support->locale));
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
  // The settings show the licence's own words.
  const bool isLicenceClear =
      std::ranges::all_of(models, [](const Model& model) { return model.licenceNotice.isEmpty(); });
  if (!isLicenceClear) return std::nullopt;

  // The size stays the same while one of two models is already installed.
  const bool isGoingOn = offer_ && offer_->recognizer == recognizer && downloaded_ == recognizer;
  if (!isGoingOn) {
    models_.clear();
    for (const Model& model : models) {
      if (!store_.isInstalled(model)) models_.push_back(model);
    }
    if (models_.empty()) return std::nullopt;
  }
  Offer offer{recognizer, isNeeded, 0, combinedState()};
  offer.bytes = offer.state.totalBytes;
  if (offer.state.isBusy()) downloaded_ = recognizer;
  const bool isUntouched = offer.state.stage == Stage::absent || offer.state.stage == Stage::paused;
  if (!isNeeded && isUntouched && declined().contains(recognizer)) return std::nullopt;
  return offer;
}

ModelState BetterCaptions::combinedState() const {
  std::vector<ModelState> states;
  for (const Model& model : models_) states.push_back(store_.state(model));
  ModelState all;
  all.stage = combined(states);
  for (const ModelState& state : states) {
    all.doneBytes += state.doneBytes;
    all.totalBytes += state.totalBytes;
    all.bytesPerSecond += state.bytesPerSecond;
    if (all.failure.isEmpty()) all.failure = state.failure;
  }
  if (all.bytesPerSecond > 0) {
    const auto missing = static_cast<double>(all.totalBytes - all.doneBytes);
    all.secondsLeft = static_cast<int>(std::ceil(missing / all.bytesPerSecond));
  }
  return all;
}

void BetterCaptions::download() {
  if (!offer_) return;
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
