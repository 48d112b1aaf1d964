// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/translation_models.h"

#include "language/localization.h"
#include "support/suite.h"
#include "ui/models/models_fixture.h"

#include <QSignalSpy>

using namespace velun;
using Stage = ModelState::Stage;

namespace {

Model translationModel(const QString& id, const QString& source, const QString& target,
                       std::int64_t megabytes) {
  Model model;
  model.id = id;
  model.kind = ModelKind::translation;
  model.languages = {source, target};
  model.licence = "MPL-2.0";
  model.installedBytes = megabytes * 1'500'000;
  model.options["comet"] = 0.87;
  ModelDownload download;
  download.addresses = {"https://example.org/" + id};
  download.bytes = megabytes * 1'000'000;
  model.downloads = {download};
  return model;
}

/// Models from and into Korean, two of the latter, and from French.
ModelCatalogue someModels() {
  return ModelCatalogue({translationModel("enko-best", "en", "ko", 50),
                         translationModel("enko-lesser", "en", "ko", 15),
                         translationModel("koen", "ko", "en", 40),
                         translationModel("fren", "fr", "en", 20)});
}

ModelState stateOf(Stage stage, std::int64_t megabytes = 0) {
  ModelState state;
  state.stage = stage;
  state.doneBytes = megabytes * 1'000'000;
  return state;
}

struct Fixture : test::ModelsFixture {
  Fixture() : ModelsFixture(someModels()) {
    translation.pairs = {{{"en", "ko"}, {model("enko-best"), model("enko-lesser")}},
                         {{"ko", "en"}, {model("koen")}},
                         {{"fr", "en"}, {model("fren")}}};
    list = std::make_unique<TranslationModels>(captions, services());
  }

  const Model& model(const char* id) const { return *catalogue.find(id); }

  void speakFrench() {
    translation.bytes["en"] = 20'000'000;
    settings.setLocaleID("fr_FR");
  }

  ModelGroup group(const QString& id) const {
    for (const ModelGroup& each : list->groups()) {
      if (each.id == id) return each;
    }
    return {};
  }
  ModelRow into() const { return group("ko").rows.front(); }
  QString facts() const { return into().facts.join('\n'); }
  QStringList buttons() const {
    QStringList texts;
    for (const ModelRowAction& each : into().actions) texts << each.text;
    return texts;
  }
  void perform(ModelAction action) { list->perform(action, "ko", "into"); }

  std::unique_ptr<TranslationModels> list;
};

}  // namespace

class TranslationModelsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void everyLanguageIsListedOnce() {
    Fixture f;
    QStringList titles;
    for (const ModelGroup& each : f.list->groups()) titles << each.title;
    QCOMPARE(titles, QStringList({"French", "Korean"}));
    QCOMPARE(f.group("ko").ownName, QString("한국어"));
    QCOMPARE(f.group("ko").rows.size(), std::size_t(2));
    QCOMPARE(f.group("ko").rows[0].title, QString("Into Korean"));
    QCOMPARE(f.group("ko").rows[1].title, QString("From Korean"));
    QCOMPARE(f.group("ko").summary, QString("Not installed · 50 MB to download"));
    QCOMPARE(f.group("fr").rows.front().title, QString("From French"));
    f.settings.setLanguage(AppLanguage::korean);
    QCOMPARE(f.into().title, QString("한국어로 번역"));
  }

  void modelIsInstalledAndRemoved() {
    Fixture f;
    QVERIFY(f.facts().contains("Quality 87 of 100"));
    QVERIFY(f.facts().contains("50 MB to download · License: MPL-2.0"));
    QCOMPARE(f.buttons(), QStringList({"Install", "License…"}));
    f.perform(ModelAction::install);
    QCOMPARE(f.store.asked, QStringList("enko-best"));
    f.store.setState(f.model("enko-best"), stateOf(Stage::downloading, 25));
    QCOMPARE(f.into().progress, std::optional(0.5));
    QCOMPARE(f.buttons(), QStringList({"Pause", "Cancel", "License…"}));
    QCOMPARE(f.group("ko").summary, QString("Downloading…"));
    f.perform(ModelAction::pause);
    QCOMPARE(f.store.paused, QStringList("enko-best"));
    f.store.setState(f.model("enko-best"), stateOf(Stage::paused, 25));
    QCOMPARE(f.buttons(), QStringList({"Resume", "Cancel", "License…"}));
    f.perform(ModelAction::cancel);
    QCOMPARE(f.store.cancelled, QStringList("enko-best"));

    f.store.setInstalled(f.model("enko-best"));
    QVERIFY(f.facts().contains("Installed on 22 November 2026 · 75 MB on disk"));
    QVERIFY(!f.facts().contains("to download"));
    QCOMPARE(f.group("ko").summary, QString("Ready into this language"));
    QVERIFY(f.group("ko").isInstalled);
    QCOMPARE(f.buttons(), QStringList({"Remove…", "License…"}));
    f.question.answers = {0};
    f.perform(ModelAction::remove);
    QCOMPARE(f.question.asked.back().message, QString("Remove “Into Korean”?"));
    QVERIFY(!f.store.isInstalled(f.model("enko-best")));
  }

  void wayThroughEnglishIsOneDownload() {
    Fixture f;
    f.speakFrench();
    QVERIFY(f.facts().contains("70 MB to download"));
    QVERIFY(f.facts().contains("French is translated into English first"));
    f.perform(ModelAction::install);
    QCOMPARE(f.store.asked, QStringList({"enko-best", "fren"}));
    f.store.setState(f.model("enko-best"), stateOf(Stage::downloading, 30));
    f.store.setState(f.model("fren"), stateOf(Stage::downloading, 5));
    QCOMPARE(f.into().progress, std::optional(0.5));
    f.perform(ModelAction::cancel);
    QCOMPARE(f.store.cancelled, QStringList({"enko-best", "fren"}));

    f.store.setState(f.model("fren"), {});
    f.store.setInstalled(f.model("enko-best"));
    QCOMPARE(f.buttons(), QStringList({"Install", "Remove…", "License…"}));
    QVERIFY(f.facts().contains("20 MB to download"));
    f.store.setInstalled(f.model("fren"));
    QCOMPARE(f.buttons(), QStringList({"Remove…", "License…"}));
    f.question.answers = {0};
    f.perform(ModelAction::remove);
    QVERIFY(f.store.isInstalled(f.model("fren")));
  }

  void translatorOfTheSystemSavesTheStepToEnglish() {
    Fixture f;
    f.speakFrench();
    f.translation.bytes["en"] = 0;
    QVERIFY(f.facts().contains("50 MB to download"));
  }

  void spokenLanguageIsTranslatedIntoEnglish() {
    Fixture f;
    QVERIFY(f.group("en").rows.empty());
    f.speakFrench();
    const ModelGroup english = f.group("en");
    QCOMPARE(english.rows.size(), std::size_t(1));
    QCOMPARE(english.rows.front().title, QString("Into English"));
    f.list->perform(ModelAction::install, "en", "into");
    QCOMPARE(f.store.asked, QStringList("fren"));
  }

  void betterModelThanTheInstalledOneIsReachable() {
    Fixture f;
    f.store.setInstalled(f.model("enko-lesser"));
    QVERIFY(f.facts().contains("A better model is available: 50 MB to download."));
    QCOMPARE(f.buttons(), QStringList({"Update", "Remove…", "License…"}));
    f.perform(ModelAction::update);
    QCOMPARE(f.store.asked, QStringList("enko-best"));
    f.store.setState(f.model("enko-best"), stateOf(Stage::downloading, 10));
    QCOMPARE(f.buttons(), QStringList({"Pause", "Cancel", "License…"}));
    f.store.setInstalled(f.model("enko-best"));
    QVERIFY(!f.facts().contains("better"));
    QCOMPARE(f.buttons(), QStringList({"Remove…", "License…"}));
    f.question.answers = {0};
    f.perform(ModelAction::remove);
    QVERIFY(f.store.present.isEmpty());
  }

  void otherRevisionIsUpdated() {
    Fixture f;
    f.store.outdated += "enko-best";
    QVERIFY(f.facts().contains("An update is available."));
    QCOMPARE(f.buttons(), QStringList({"Update", "Remove…", "License…"}));
    f.perform(ModelAction::update);
    QCOMPARE(f.store.asked, QStringList("enko-best"));
  }

  void modelInUseIsNotRemoved() {
    Fixture f;
    f.store.setInstalled(f.model("enko-best"));
    const std::shared_ptr<const void> use = f.store.use(f.model("enko-best"));
    const ModelRowAction remove = f.into().actions.front();
    QCOMPARE(remove.action, ModelAction::remove);
    QVERIFY(!remove.isEnabled && remove.toolTip.contains("two minutes"));
  }

  void failedDownloadIsTriedAgain() {
    Fixture f;
    ModelState failed = stateOf(Stage::failed);
    failed.failure = "no connection";
    f.store.setState(f.model("enko-best"), failed);
    QCOMPARE(f.into().notice, QString("no connection"));
    f.perform(ModelAction::retry);
    QCOMPARE(f.store.asked, QStringList("enko-best"));
  }

  void meteredConnectionIsAskedAbout() {
    Fixture f;
    f.store.metered = true;
    f.question.answers = {1};
    f.perform(ModelAction::install);
    QVERIFY(f.store.asked.isEmpty());
  }

  void targetOfTheCaptionsIsMarked() {
    Fixture f;
    QSignalSpy changed(f.list.get(), &ModelList::changed);
    f.settings.setTargetID("ko");
    f.settings.setTranslate(true);
    QVERIFY(changed.count() > 0);
    QVERIFY(f.group("ko").isCurrent && f.into().mark.isEmpty());
    f.store.setInstalled(f.model("enko-best"));
    QCOMPARE(f.into().mark, QString("In Use"));
    QVERIFY(!f.group("fr").isCurrent);
  }

  void modelsForOtherPurposesDoNotMatter() {
    Fixture f;
    const QSignalSpy changed(f.list.get(), &ModelList::changed);
    Q_EMIT f.store.stateChanged("a speech model");
    QCOMPARE(changed.count(), 0);
    Q_EMIT f.store.stateChanged("koen");
    QCOMPARE(changed.count(), 1);
  }
};

QTEST_MAIN(TranslationModelsTest)
#include "translation_models_test.moc"
