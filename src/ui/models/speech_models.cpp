// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/speech_models.h"

#include "language/language_search.h"
#include "language/localization.h"
#include "platform/models/model_store.h"
#include "ui/models/model_commands.h"
#include "ui/models/model_texts.h"

#include <algorithm>
#include <QLocale>

namespace velun {

namespace {

QString languageOf(const QString& locale) {
  return locale.section('_', 0, 0);
}

const RecognizerCandidate* firstInstalled(const std::vector<RecognizerCandidate>& candidates) {
  const auto found = std::find_if(candidates.begin(), candidates.end(),
                                  [](const auto& each) { return each.isInstalled; });
  return found == candidates.end() ? nullptr : &*found;
}

}  // namespace

SpeechModels::SpeechModels(CaptionViewModel& captions, const ModelServices& services)
    : captions_(captions), services_(services) {
  connect(&captions_, &CaptionViewModel::localesChanged, this, &ModelList::changed);
  connect(&captions_.settings(), &AppSettings::localeIDChanged, this, &ModelList::changed);
  connect(&captions_, &CaptionViewModel::isRunningChanged, this, &ModelList::changed);
  connect(&services_.store, &ModelStore::stateChanged, this, [this](const QString& id) {
    const Model* model = services_.catalogue->find(id);
    const bool isOther =
        model && (model->kind == ModelKind::translation || model->kind == ModelKind::speakers);
    if (!isOther) Q_EMIT changed();
  });
  connect(&services_.preferences, &RecognizerPreferences::choiceChanged, this, &ModelList::changed);
  connect(&Localization::shared(), &Localization::languageChanged, this, &ModelList::changed);
}

QString SpeechModels::title() const {
  return L("Speech Recognition", "음성 인식");
}

QString SpeechModels::currentLocale() const {
  const std::optional<SpeechSupport> support =
      services_.speech.support(captions_.settings().localeID());
  return support ? support->locale : QString();
}

std::vector<ModelGroup> SpeechModels::groups() const {
  std::vector<ModelGroup> all;
  const QString current = currentLocale();
  for (const QString& locale : captions_.locales()) {
    ModelGroup made = group(locale);
    if (made.rows.empty()) continue;
    made.isCurrent = locale == current;
    all.push_back(std::move(made));
  }
  return all;
}

ModelGroup SpeechModels::group(const QString& locale) const {
  const std::vector<RecognizerCandidate> candidates = services_.speech.candidates(locale);
  const RecognizerCandidate* used = firstInstalled(candidates);
  ModelGroup made;
  made.id = locale;
  made.title = languageName(locale);
  made.ownName = QLocale(locale).nativeLanguageName();
  made.summary = summary(candidates);
  made.isInstalled = used != nullptr;
  made.searchNames = languageSearchNames(locale);
  for (const RecognizerCandidate& candidate : candidates) {
    made.rows.push_back(row(candidate, locale, &candidate == used));
  }
  return made;
}

QString SpeechModels::summary(const std::vector<RecognizerCandidate>& candidates) const {
  for (const RecognizerCandidate& candidate : candidates) {
    const Model* model = services_.catalogue->find(candidate.model);
    if (!model) continue;
    const ModelState state = services_.store.state(*model);
    if (state.isBusy()) return L("Downloading %1…", "%1 다운로드 중…").arg(candidate.title);
  }
  if (const RecognizerCandidate* used = firstInstalled(candidates)) {
    return L("Uses %1", "%1 사용").arg(used->title);
  }
  const Model* best =
      candidates.empty() ? nullptr : services_.catalogue->find(candidates.front().model);
  if (!best) return L("Not installed", "설치되지 않음");
  return L("Not installed · %1 to download", "설치되지 않음 · 다운로드 %1")
      .arg(sizeText(best->downloadBytes()));
}

ModelRow SpeechModels::row(const RecognizerCandidate& candidate, const QString& locale,
                           bool isUsed) const {
  ModelRow made;
  made.id = candidate.id;
  made.title = candidate.title;
  if (isUsed) made.mark = L("In Use", "사용 중");
  if (candidate.isInstalled && !isUsed) {
    made.actions.push_back({ModelAction::use, L("Use This One", "이 모델 사용"), {}});
  }
  if (candidate.isChosen) {
    made.actions.push_back({ModelAction::chooseAutomatically,
                            L("Choose Automatically", "자동으로 선택"),
                            L("Velun uses the best one that this computer can run",
                              "이 컴퓨터에서 실행할 수 있는 가장 좋은 모델을 사용합니다")});
  }
  if (const Model* model = services_.catalogue->find(candidate.model)) {
    made.facts = factsText(*model, languageOf(locale), candidate.getsPunctuation);
    describe(made, *model, candidate);
    describeMarks(made, missingMarks(*model, languageOf(locale)));
  } else {
    made.facts = builtInFactsText();
  }
  return made;
}

void SpeechModels::describe(ModelRow& row, const Model& model,
                            const RecognizerCandidate& candidate) const {
  const ModelStore& store = services_.store;
  if (const std::optional<ModelInstallation> there = store.installation(model)) {
    row.facts.append(installationText(there->date, store.diskBytes(model)));
    if (!there->isCurrent) {
      row.facts.append(L("An update is available.", "업데이트가 있습니다."));
    }
  }
  if (!candidate.isSuitable) {
    row.facts.append(L("This computer may be too slow for it or have too little memory.",
                       "이 컴퓨터에는 너무 느리거나 메모리가 부족할 수 있습니다."));
  }
  showState(row, store.state(model));
  const std::vector<ModelRowAction> actions = storeActions(store, model);
  row.actions.insert(row.actions.end(), actions.begin(), actions.end());
  row.actions.push_back({ModelAction::showLicence, L("License…", "라이선스…"), {}});
}

/// The punctuation model that an installed model lacks; null if there is none.
const Model* SpeechModels::missingMarks(const Model& model, const QString& language) const {
  if (!services_.store.isInstalled(model)) return nullptr;
  const Model* marks = services_.catalogue->punctuationFor(model, language);
  return marks && !services_.store.isInstalled(*marks) ? marks : nullptr;
}

void SpeechModels::describeMarks(ModelRow& row, const Model* missing) const {
  if (!missing) return;
  const ModelState state = services_.store.state(*missing);
  showState(row, state);
  std::vector<ModelRowAction> actions = downloadActions(state.stage);
  if (state.stage == ModelState::Stage::absent) {
    row.facts.append(
        L("Its punctuation model is not installed.", "문장 부호 모델이 설치되지 않았습니다."));
    actions.front().text = L("Install Punctuation", "문장 부호 설치");
  }
  row.actions.insert(row.actions.begin(), actions.begin(), actions.end());
}

void SpeechModels::remove(const Model& model, const Model* marks) {
  std::vector<Model> removed = {model};
  QString note;
  if (marks && services_.store.installation(*marks) && !isPunctuated(*marks, model)) {
    removed.push_back(*marks);
    note = L("The punctuation model is removed too: no other model needs it.",
             "문장 부호 모델도 함께 삭제됩니다. 이를 사용하는 다른 모델이 없습니다.");
  }
  removeAsked(services_, model.title, removed, note);
}

/// Whether a recognition model other than `except`, installed or on its way, needs the punctuation
/// model.
bool SpeechModels::isPunctuated(const Model& marks, const Model& except) const {
  const auto needsIt = [&](const Model& model) {
    if (model.kind != ModelKind::recognition || model.id == except.id) return false;
    if (!services_.store.installation(model) && !services_.store.state(model).isBusy())
      return false;
    return std::ranges::any_of(model.languages, [&](const QString& language) {
      const Model* found = services_.catalogue->punctuationFor(model, language);
      return found && found->id == marks.id;
    });
  };
  return std::ranges::any_of(services_.catalogue->models(), needsIt);
}

/// What is to be downloaded so that a model can be used with its punctuation.
std::vector<Model> SpeechModels::missingParts(const Model& model, const Model* marks) const {
  std::vector<Model> missing;
  for (const Model* each : {&model, marks}) {
    if (each && !services_.store.isInstalled(*each)) missing.push_back(*each);
  }
  return missing;
}

void SpeechModels::perform(ModelAction action, const QString& group, const QString& model) {
  if (action == ModelAction::use) return services_.preferences.setChoice(group, model);
  if (action == ModelAction::chooseAutomatically) {
    return services_.preferences.setChoice(group, QString());
  }
  const Model* found = services_.catalogue->find(model);
  if (!found) return;
  const Model chosen = *found;
  const Model* marks = services_.catalogue->punctuationFor(chosen, languageOf(group));
  switch (action) {
    case ModelAction::install:
    case ModelAction::update: {
      const std::vector<Model> wanted = missingParts(chosen, marks);
      if (agreesToLicences(services_.question, wanted)) downloadAsked(services_, wanted);
      return;
    }
    case ModelAction::resume:
    case ModelAction::retry:
      return downloadAsked(services_, missingParts(chosen, marks));
    case ModelAction::pause:
      services_.store.pause(chosen);
      if (marks && !isPunctuated(*marks, chosen)) services_.store.pause(*marks);
      return;
    case ModelAction::cancel:
      services_.store.cancel(chosen);
      if (marks && !isPunctuated(*marks, chosen)) services_.store.cancel(*marks);
      return;
    case ModelAction::remove:
      return remove(chosen, marks);
    case ModelAction::showLicence:
      return Q_EMIT licenceRequested(chosen);
    case ModelAction::use:
    case ModelAction::chooseAutomatically:
      break;
  }
}

}  // namespace velun
