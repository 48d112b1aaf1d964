// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/speaker_model_list.h"

#include "language/language_search.h"
#include "language/localization.h"
#include "platform/models/installed_model.h"
#include "ui/models/model_commands.h"
#include "ui/models/model_texts.h"

namespace velun {

SpeakerModelList::SpeakerModelList(const ModelServices& services) : services_(services) {
  connect(&services_.store, &ModelStore::stateChanged, this, [this](const QString& id) {
    const Model* model = services_.catalogue->find(id);
    if (model && model->kind == ModelKind::speakers) Q_EMIT changed();
  });
  connect(&Localization::shared(), &Localization::languageChanged, this, &ModelList::changed);
}

QString SpeakerModelList::title() const {
  return L("Speakers", "화자");
}

std::vector<ModelGroup> SpeakerModelList::groups() const {
  const Model* used = installedModel(*services_.catalogue, services_.store, ModelKind::speakers);
  ModelGroup group;
  group.id = QStringLiteral("speakers");
  group.title = L("Tell Speakers Apart", "화자 구분");
  group.summary =
      used ? L("Uses %1", "%1 사용").arg(used->title)
           : L("Not installed · turned on under Captions", "설치되지 않음 · ‘자막’에서 사용 설정");
  group.isInstalled = used != nullptr;
  group.searchNames = {foldedLanguageName(group.title), foldedLanguageName(title())};
  for (const Model& model : services_.catalogue->ofKind(ModelKind::speakers)) {
    group.rows.push_back(row(model, used && used->id == model.id));
  }
  if (group.rows.empty()) return {};
  return {group};
}

ModelRow SpeakerModelList::row(const Model& model, bool isUsed) const {
  const ModelStore& store = services_.store;
  ModelRow row;
  row.id = model.id;
  row.title = model.title;
  if (isUsed) row.mark = L("In Use", "사용 중");
  row.facts = speakerFactsText(model);
  if (const std::optional<ModelInstallation> there = store.installation(model)) {
    row.facts.append(installationText(there->date, store.diskBytes(model)));
  }
  showState(row, store.state(model));
  row.actions = storeActions(store, model);
  row.actions.push_back({ModelAction::showLicence, L("License…", "라이선스…"), {}});
  return row;
}

void SpeakerModelList::perform(ModelAction action, const QString& /*group*/, const QString& model) {
  const Model* found = services_.catalogue->find(model);
  if (!found) return;
  const Model chosen = *found;
  switch (action) {
    case ModelAction::install:
    case ModelAction::update:
      if (!agreesToLicences(services_.question, {chosen})) return;
      [[fallthrough]];
    case ModelAction::resume:
    case ModelAction::retry:
      return downloadAsked(services_, {chosen});
    case ModelAction::pause:
      return services_.store.pause(chosen);
    case ModelAction::cancel:
      return services_.store.cancel(chosen);
    case ModelAction::remove:
      return removeAsked(services_, chosen.title, {chosen});
    case ModelAction::showLicence:
      return Q_EMIT licenceRequested(chosen);
    case ModelAction::use:
    case ModelAction::chooseAutomatically:
      break;
  }
}

}  // namespace velun
