// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/translation_models.h"

#include "language/language_search.h"
#include "language/localization.h"
#include "model/line.h"
#include "ui/models/model_commands.h"
#include "ui/models/model_texts.h"

#include <algorithm>
#include <QLocale>

namespace velun {

namespace {

using Stage = ModelState::Stage;

// The ids of the rows of a language.
const QString kInto = QStringLiteral("into");
const QString kFrom = QStringLiteral("from");

QString titleOf(const QString& id, const QString& language) {
  const QString name = languageName(language);
  return id == kInto ? L("Into %1", "%1로 번역").arg(name) : L("From %1", "%1에서 번역").arg(name);
}

bool isReady(const ModelStore& store, const std::optional<TranslationSteps>& steps) {
  return steps && missingModels(store, *steps).empty();
}

double qualityOf(const Model& model) {
  return model.options["comet"].toDouble();
}

std::int64_t downloadBytes(const std::vector<Model>& models) {
  std::int64_t bytes = 0;
  for (const Model& model : models) bytes += model.downloadBytes();
  return bytes;
}

}  // namespace

TranslationModels::TranslationModels(CaptionViewModel& captions, const ModelServices& services)
    : captions_(captions), services_(services) {
  const AppSettings& settings = captions_.settings();
  for (const auto signal : {&AppSettings::localeIDChanged, &AppSettings::targetIDChanged,
                            &AppSettings::translateChanged}) {
    connect(&settings, signal, this, &ModelList::changed);
  }
  connect(&services_.store, &ModelStore::stateChanged, this, [this](const QString& id) {
    const Model* model = services_.catalogue->find(id);
    if (model && model->kind == ModelKind::translation) Q_EMIT changed();
  });
  connect(&Localization::shared(), &Localization::languageChanged, this, &ModelList::changed);
}

QString TranslationModels::title() const {
  return L("Translation", "번역");
}

QString TranslationModels::spoken() const {
  return translationLanguage(captions_.settings().localeID(), true);
}

TranslationFinder TranslationModels::finder() const {
  return {services_.translation, spoken()};
}

bool TranslationModels::isTarget(const QString& language) const {
  const AppSettings& settings = captions_.settings();
  return settings.translate() && translationLanguage(settings.targetID(), false) == language;
}

std::vector<ModelGroup> TranslationModels::groups() const {
  const TranslationFinder finder = this->finder();
  std::vector<ModelGroup> all;
  for (const QString& language : finder.languages()) all.push_back(group(finder, language));
  std::ranges::sort(all, CodePointOrder(), &ModelGroup::title);
  return all;
}

ModelGroup TranslationModels::group(const TranslationFinder& finder,
                                    const QString& language) const {
  const std::optional<TranslationSteps> into = finder.into(language);
  const std::optional<TranslationSteps> from = finder.from(language);
  ModelGroup made;
  made.id = language;
  made.title = languageName(language);
  made.ownName = QLocale(language).nativeLanguageName();
  made.summary = summary(into, from);
  made.isInstalled = isReady(services_.store, into) || isReady(services_.store, from);
  made.isCurrent = isTarget(language);
  made.searchNames = languageSearchNames(language);
  if (into) made.rows.push_back(row(*into, kInto, titleOf(kInto, language)));
  if (from) made.rows.push_back(row(*from, kFrom, titleOf(kFrom, language)));
  if (made.isCurrent && into && isReady(services_.store, into)) {
    made.rows.front().mark = L("In Use", "사용 중");
  }
  return made;
}

QString TranslationModels::summary(const std::optional<TranslationSteps>& into,
                                   const std::optional<TranslationSteps>& from) const {
  const ModelStore& store = services_.store;
  for (const std::optional<TranslationSteps>& steps : {into, from}) {
    if (steps && stateOf(store, *steps).isBusy()) return L("Downloading…", "다운로드 중…");
  }
  const bool isIntoReady = isReady(store, into);
  const bool isFromReady = isReady(store, from);
  if (isIntoReady && isFromReady) return L("Ready in both directions", "양방향 사용 가능");
  if (isIntoReady) return L("Ready into this language", "이 언어로 번역 가능");
  if (isFromReady) return L("Ready from this language", "이 언어에서 번역 가능");
  return L("Not installed · %1 to download", "설치되지 않음 · 다운로드 %1")
      .arg(sizeText(downloadBytes(missingModels(store, into ? *into : *from))));
}

ModelRow TranslationModels::row(const TranslationSteps& steps, const QString& id,
                                const QString& title) const {
  const ModelStore& store = services_.store;
  ModelRow made;
  made.id = id;
  made.title = title;
  made.facts = translationFactsText(shownModel(store, steps.own),
                                    downloadBytes(missingModels(store, steps)));
  describe(made, steps);
  showState(made, stateOf(store, steps));
  made.actions = actions(steps);
  return made;
}

void TranslationModels::describe(ModelRow& row, const TranslationSteps& steps) const {
  const ModelStore& store = services_.store;
  if (steps.toEnglish) {
    row.facts.append(L("Speech in %1 is translated into English first; the download includes that.",
                       "%1 음성은 먼저 영어로 번역되며, 그 모델도 다운로드에 포함됩니다.")
                         .arg(languageName(spoken())));
  }
  const std::vector<Model> installed = installedModels(store, steps.own);
  if (installed.empty()) return;
  std::int64_t bytes = 0;
  for (const Model& model : installed) bytes += store.diskBytes(model);
  row.facts.append(installationText(store.installation(installed.front())->date, bytes));
  if (const Model* better = betterModel(store, steps.own)) {
    // The best one may have been measured as too slow on this computer.
    const bool isBetter = qualityOf(*better) >= qualityOf(installed.front());
    const QString text = isBetter ? L("A better model is available: %1 to download.",
                                      "더 나은 모델이 있습니다: 다운로드 %1.")
                                  : L("A faster model is available: %1 to download.",
                                      "더 빠른 모델이 있습니다: 다운로드 %1.");
    row.facts.append(text.arg(sizeText(better->downloadBytes())));
  } else if (!store.installation(installed.front())->isCurrent) {
    row.facts.append(L("An update is available.", "업데이트가 있습니다."));
  }
}

std::vector<ModelRowAction> TranslationModels::actions(const TranslationSteps& steps) const {
  const ModelStore& store = services_.store;
  const std::vector<Model> installed = installedModels(store, steps.own);
  const Stage stage = stateOf(store, steps).stage;
  const bool isOutdated =
      stage == Stage::absent && !installed.empty() && !store.isInstalled(installed.front());
  std::vector<ModelRowAction> all;
  if (isOutdated || (stage == Stage::installed && betterModel(store, steps.own))) {
    all.push_back({ModelAction::update, L("Update", "업데이트"), {}});
  } else {
    all = downloadActions(stage);
  }
  const bool isIdle = stage == Stage::absent || stage == Stage::installed;
  if (isIdle && !installed.empty()) {
    const bool isUsed = std::ranges::any_of(
        installed, [&store](const Model& model) { return store.isUsed(model); });
    all.push_back(removeAction(ModelKind::translation, isUsed));
  }
  all.push_back({ModelAction::showLicence, L("License…", "라이선스…"), {}});
  return all;
}

void TranslationModels::perform(ModelAction action, const QString& group, const QString& model) {
  const TranslationFinder finder = this->finder();
  const std::optional<TranslationSteps> steps =
      model == kInto ? finder.into(group) : finder.from(group);
  if (steps) perform(action, *steps, titleOf(model, group));
}

void TranslationModels::perform(ModelAction action, const TranslationSteps& steps,
                                const QString& title) {
  ModelStore& store = services_.store;
  std::vector<Model> missing = missingModels(store, steps);
  switch (action) {
    case ModelAction::update:
      if (const Model* better = betterModel(store, steps.own)) missing.push_back(*better);
      [[fallthrough]];
    case ModelAction::install:
      if (agreesToLicences(services_.question, missing)) downloadAsked(services_, missing);
      return;
    case ModelAction::resume:
    case ModelAction::retry:
      return downloadAsked(services_, missing);
    case ModelAction::pause:
      for (const Model& model : missing) store.pause(model);
      return;
    case ModelAction::cancel:
      for (const Model& model : missing) store.cancel(model);
      return;
    case ModelAction::remove:
      return removeAsked(services_, title, installedModels(store, steps.own));
    case ModelAction::showLicence:
      return Q_EMIT licenceRequested(shownModel(store, steps.own));
    case ModelAction::use:
    case ModelAction::chooseAutomatically:
      return;
  }
}

}  // namespace velun
