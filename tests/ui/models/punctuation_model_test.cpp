// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/suite.h"
#include "ui/models/models_page_stage.h"

using namespace velun;

namespace {

ModelState at(ModelState::Stage stage, const QString& failure = {}) {
  ModelState state;
  state.stage = stage;
  state.failure = failure;
  return state;
}

}  // namespace

/// How the page treats the punctuation model that a model for speech needs.
class PunctuationModelTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void punctuationIsRemovedWithTheLastModelThatNeedsIt() {
    test::ModelsPageStage stage;
    for (const char* id : {"small-en", "other-en", "marks-en"}) {
      stage.store.setInstalled(stage.model(id));
    }
    stage.open();
    stage.question.answers = {0, 0};
    stage.press("Remove…: SMALL-EN");
    QVERIFY(!stage.question.asked.back().informativeText.contains("punctuation"));
    QVERIFY(stage.store.isInstalled(stage.model("marks-en")));
    stage.press("Remove…: OTHER-EN");
    QVERIFY(stage.question.asked.back().informativeText.startsWith("The punctuation model is"));
    QVERIFY(stage.question.asked.back().informativeText.contains("67 MB"));
    QVERIFY(!stage.store.isInstalled(stage.model("marks-en")));
  }

  void punctuationIsInstalledWithAModelThatWritesNone() {
    test::ModelsPageStage stage;
    stage.open();
    stage.press("Install: SMALL-EN");
    QCOMPARE(stage.store.asked, QStringList({"small-en", "marks-en"}));
  }

  void punctuationIsPausedAndCancelledWithItsModel() {
    test::ModelsPageStage stage;
    stage.store.setState(stage.model("small-en"), at(ModelState::Stage::downloading));
    stage.open();
    stage.press("Pause: SMALL-EN");
    QCOMPARE(stage.store.paused, QStringList({"small-en", "marks-en"}));
    stage.store.setState(stage.model("small-en"), at(ModelState::Stage::paused));
    stage.press("Resume: SMALL-EN");
    QCOMPARE(stage.store.asked, QStringList({"small-en", "marks-en"}));
    stage.press("Cancel: SMALL-EN");
    QCOMPARE(stage.store.cancelled, QStringList({"small-en", "marks-en"}));
  }

  void punctuationThatAnotherModelNeedsIsNotCancelled() {
    test::ModelsPageStage stage;
    stage.store.setInstalled(stage.model("other-en"));
    stage.store.setState(stage.model("small-en"), at(ModelState::Stage::paused));
    stage.open();
    stage.press("Cancel: SMALL-EN");
    QCOMPARE(stage.store.cancelled, QStringList("small-en"));
  }

  void punctuationOfAnotherModelOnItsWayIsNotStopped() {
    test::ModelsPageStage stage;
    stage.store.setState(stage.model("other-en"), at(ModelState::Stage::downloading));
    stage.store.setState(stage.model("small-en"), at(ModelState::Stage::downloading));
    stage.open();
    stage.press("Pause: SMALL-EN");
    QCOMPARE(stage.store.paused, QStringList("small-en"));
    stage.press("Cancel: SMALL-EN");
    QCOMPARE(stage.store.cancelled, QStringList("small-en"));
  }

  void missingPunctuationOfAnInstalledModelIsInstalled() {
    test::ModelsPageStage stage;
    stage.store.setInstalled(stage.model("small-en"));
    stage.open();
    QVERIFY(stage.shows("Its punctuation model is not installed."));
    stage.press("Install Punctuation: SMALL-EN");
    QCOMPARE(stage.store.asked, QStringList("marks-en"));
    stage.store.setState(stage.model("marks-en"), at(ModelState::Stage::failed, "No connection."));
    QVERIFY(stage.shows("No connection."));
    stage.press("Try Again: SMALL-EN");
    QCOMPARE(stage.store.asked, QStringList({"marks-en", "marks-en"}));
    stage.store.setInstalled(stage.model("marks-en"));
    QVERIFY(!stage.shows("No connection.") && !stage.button("Install Punctuation: SMALL-EN"));
    QVERIFY(stage.button("Remove…: SMALL-EN"));
  }

  void punctuationThatIsAddedIsSaid() {
    test::ModelsPageStage stage;
    stage.open();
    QVERIFY(stage.shows("Writes words; Velun adds capital letters and punctuation"));
  }
};

QTEST_MAIN(PunctuationModelTest)
#include "punctuation_model_test.moc"
