// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/models/group_header.h"
#include "ui/models/models_fixture.h"
#include "ui/models/models_page.h"

#include <algorithm>
#include <map>
#include <memory>
#include <QAbstractButton>
#include <QJsonArray>
#include <QLabel>
#include <QLineEdit>
#include <QTest>

namespace velun::test {

inline Model speechModel(const QString& id, const QString& locale, std::int64_t megabytes) {
  Model model;
  model.id = id;
  model.title = id.toUpper();
  model.languages = {locale.section('_', 0, 0)};
  model.licence = "Apache-2.0";
  model.installedBytes = megabytes * 1'000'000;
  model.options["locales"] = QJsonArray{locale};
  ModelDownload download;
  download.addresses = {"https://example.org/" + id + ".onnx"};
  download.bytes = model.installedBytes;
  model.downloads = {download};
  return model;
}

inline ModelCatalogue someModels() {
  Model small = speechModel("small-en", "en_US", 70);
  small.options["punctuation"] = "none";
  Model other = speechModel("other-en", "en_US", 60);
  other.options["punctuation"] = "none";
  Model big = speechModel("big-en", "en_US", 134);
  big.writesCase = big.writesPunctuation = true;
  Model french = speechModel("french", "fr_FR", 80);
  french.licence = "Unclear";
  french.licenceNotice = {"The makers say so.", "제작자의 설명입니다."};
  Model marks = speechModel("marks-en", "en_US", 7);
  marks.kind = ModelKind::punctuation;
  return ModelCatalogue({big, small, other, french, speechModel("korean", "ko_KR", 90), marks});
}

inline Model speakerModel(const QString& id) {
  Model model = speechModel(id, "en_US", 28);
  model.kind = ModelKind::speakers;
  return model;
}

/// The page "Languages & Models" over a scripted store. Its models for English are "big-en", which
/// writes punctuation, and "small-en" and "other-en", which need "marks-en" for it.
struct ModelsPageStage : ModelsFixture {
  explicit ModelsPageStage(const ModelCatalogue& models = someModels()) : ModelsFixture(models) {}

  void open() {
    QTRY_VERIFY(!captions.locales().isEmpty());
    page = std::make_unique<ModelsPage>(captions, services());
    page->resize(460, 700);
    page->show();
    QVERIFY(QTest::qWaitForWindowExposed(page.get()));
  }

  const Model& model(const char* id) const { return *catalogue.find(id); }

  QAbstractButton* button(const QString& name) const {
    for (auto* each : page->findChildren<QAbstractButton*>()) {
      if (each->accessibleName() == name && each->isVisible()) return each;
    }
    return nullptr;
  }

  void press(const QString& name) const {
    QAbstractButton* found = button(name);
    QVERIFY2(found && found->isEnabled(), qPrintable(name));
    found->click();
  }

  /// The accessible names of the shown headers, from top to bottom.
  QStringList languages() const {
    std::map<int, QString> byPlace;
    for (auto* each : page->findChildren<GroupHeader*>()) {
      if (!each->isVisible()) continue;
      byPlace[each->mapTo(page.get(), QPoint()).y()] = each->text();
    }
    QStringList names;
    for (const auto& [place, name] : byPlace) names << name;
    return names;
  }

  bool shows(const QString& text) const {
    const auto labels = page->findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(), [&text](const QLabel* label) {
      return label->isVisible() && label->text().contains(text);
    });
  }

  void search(const QString& text) const {
    page->findChild<QLineEdit*>()->setText(text);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
  }

  std::unique_ptr<ModelsPage> page;
};

}  // namespace velun::test
