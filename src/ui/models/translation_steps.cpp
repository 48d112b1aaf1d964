// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/translation_steps.h"

#include <algorithm>
#include <iterator>

namespace velun {

namespace {

const QString kEnglish = QStringLiteral("en");

bool isUnderWay(const ModelState& state) {
  using enum ModelState::Stage;
  return state.isBusy() || state.stage == paused || state.stage == failed;
}

}  // namespace

std::vector<const PairModels*> TranslationSteps::all() const {
  std::vector<const PairModels*> steps{&own};
  if (toEnglish) steps.push_back(&*toEnglish);
  return steps;
}

TranslationFinder::TranslationFinder(const TranslationPlatform& platform, const QString& spoken)
    : pairs_(platform.models()), spoken_(spoken) {
  // A translator of the system may be able to do it without a model.
  const std::optional<qint64> bytes = platform.downloadBytes(spoken, {kEnglish}).front();
  needsStepToEnglish_ = spoken != kEnglish && bytes.value_or(0) > 0;
}

QStringList TranslationFinder::languages() const {
  QStringList all;
  for (const PairModels& each : pairs_) {
    if (each.pair.target == kEnglish) all << each.pair.source;
    if (each.pair.source == kEnglish) all << each.pair.target;
  }
  if (into(kEnglish)) all << kEnglish;
  all.removeDuplicates();
  return all;
}

std::optional<TranslationSteps> TranslationFinder::into(const QString& language) const {
  const bool isEnglish = language == kEnglish;
  std::optional<PairModels> own = isEnglish ? find(spoken_, kEnglish) : find(kEnglish, language);
  if (!own) return std::nullopt;
  TranslationSteps steps;
  steps.own = std::move(*own);
  if (needsStepToEnglish_ && !isEnglish && language != spoken_) {
    steps.toEnglish = find(spoken_, kEnglish);
  }
  return steps;
}

std::optional<TranslationSteps> TranslationFinder::from(const QString& language) const {
  std::optional<PairModels> own = find(language, kEnglish);
  if (!own) return std::nullopt;
  TranslationSteps steps;
  steps.own = std::move(*own);
  return steps;
}

std::optional<PairModels> TranslationFinder::find(const QString& source,
                                                  const QString& target) const {
  const LanguagePair wanted{source, target};
  const auto found = std::ranges::find(pairs_, wanted, &PairModels::pair);
  return found == pairs_.end() ? std::nullopt : std::optional(*found);
}

const Model& shownModel(const ModelStore& store, const PairModels& step) {
  const auto underWay = std::ranges::find_if(
      step.models, [&store](const Model& model) { return isUnderWay(store.state(model)); });
  if (underWay != step.models.end()) return *underWay;
  const auto installed = std::ranges::find_if(
      step.models, [&store](const Model& model) { return store.isInstalled(model); });
  return installed == step.models.end() ? step.models.front() : *installed;
}

ModelState stateOf(const ModelStore& store, const TranslationSteps& steps) {
  std::vector<ModelState> states;
  for (const PairModels* step : steps.all()) {
    states.push_back(store.state(shownModel(store, *step)));
  }
  return combined(states);
}

std::vector<Model> missingModels(const ModelStore& store, const TranslationSteps& steps) {
  std::vector<Model> missing;
  for (const PairModels* step : steps.all()) {
    const Model& model = shownModel(store, *step);
    if (!store.isInstalled(model)) missing.push_back(model);
  }
  return missing;
}

std::vector<Model> installedModels(const ModelStore& store, const PairModels& step) {
  std::vector<Model> models;
  std::ranges::copy_if(step.models, std::back_inserter(models), [&store](const Model& model) {
    return store.isInstalled(model) || store.installation(model);
  });
  return models;
}

const Model* betterModel(const ModelStore& store, const PairModels& step) {
  const Model& best = step.models.front();
  if (store.isInstalled(best)) return nullptr;
  const bool isInstalled = std::ranges::any_of(
      step.models, [&store](const Model& model) { return store.isInstalled(model); });
  return isInstalled ? &best : nullptr;
}

}  // namespace velun
