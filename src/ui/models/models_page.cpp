// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/models_page.h"

#include "language/localization.h"
#include "ui/models/licence_dialog.h"
#include "ui/models/models_view.h"

#include <QVBoxLayout>

namespace velun {

ModelsPage::ModelsPage(CaptionViewModel& captions, const ModelServices& services)
    : speech_(captions, services),
      translation_(captions, services),
      speakers_(services),
      files_(services) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  const std::vector<ModelList*> lists = {&speech_, &translation_, &speakers_};
  layout->addWidget(new ModelsView(lists, files_));
  for (const ModelList* list : lists) {
    connect(list, &ModelList::licenceRequested, this,
            [this](const Model& model) { (new LicenceDialog(model, this))->open(); });
  }
}

QString ModelsPage::title() {
  return L("Languages & Models", "언어 및 모델");
}

}  // namespace velun
