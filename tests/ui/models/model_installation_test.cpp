// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/suite.h"
#include "ui/models/models_page_stage.h"

#include <semaphore>
#include <thread>

using namespace velun;

/// How the page installs, updates and removes a model.
class ModelInstallationTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void modelIsInstalledUsedAndRemoved() {
    test::ModelsPageStage stage;
    stage.open();
    stage.press("Install: BIG-EN");
    QCOMPARE(stage.store.asked, QStringList("big-en"));
    ModelState half;
    half.stage = ModelState::Stage::downloading;
    half.doneBytes = 67'000'000;
    half.bytesPerSecond = 2e6;
    half.secondsLeft = 33;
    stage.store.setState(stage.model("big-en"), half);
    QVERIFY(stage.shows("67 MB of 134 MB · 2.0 MB/s · 33 seconds left"));
    stage.press("Pause: BIG-EN");
    QCOMPARE(stage.store.paused, QStringList("big-en"));
    stage.press("Cancel: BIG-EN");
    QCOMPARE(stage.store.cancelled, QStringList("big-en"));

    stage.store.setInstalled(stage.model("big-en"));
    QVERIFY(stage.shows("Installed on 22 November 2026 · 134 MB on disk"));
    QVERIFY(stage.shows("Models use 134 MB"));
    stage.press("Use This One: Built-in");
    QCOMPARE(stage.choices->choice("en_US"), QString("built-in"));
    stage.press("Use This One: BIG-EN");
    QCOMPARE(stage.choices->choice("en_US"), QString("big-en"));
    stage.press("Choose Automatically: BIG-EN");
    QCOMPARE(stage.choices->choice("en_US"), QString());

    stage.question.answers = {1, 0};
    stage.press("Remove…: BIG-EN");
    QVERIFY(stage.store.isInstalled(stage.model("big-en")));
    stage.press("Remove…: BIG-EN");
    QVERIFY(stage.question.asked.back().informativeText.contains("134 MB"));
    QVERIFY(!stage.store.isInstalled(stage.model("big-en")));
    QVERIFY(stage.button("Install: BIG-EN"));
    QVERIFY(stage.shows("Models use 0 MB"));
  }

  void modelInUseIsNotRemoved() {
    test::ModelsPageStage stage;
    stage.store.setInstalled(stage.model("big-en"));
    const std::shared_ptr<const void> use = stage.store.use(stage.model("big-en"));
    stage.open();
    QVERIFY(!stage.button("Remove…: BIG-EN")->isEnabled());
    QCOMPARE(stage.button("Remove…: BIG-EN")->toolTip(), QString("Captions use it now"));
  }

  void failedRemovalIsReported() {
    test::ModelsPageStage stage;
    stage.store.setInstalled(stage.model("big-en"));
    stage.open();
    stage.store.failure = "The disk is read-only.";
    stage.question.answers = {0, 0};
    stage.press("Remove…: BIG-EN");
    QCOMPARE(stage.question.asked.size(), std::size_t(2));
    QCOMPARE(stage.question.asked.back().informativeText, QString("The disk is read-only."));
    QVERIFY(stage.button("Remove…: BIG-EN"));
  }

  void unclearLicenceHasToBeAgreedTo() {
    test::ModelsPageStage stage;
    stage.open();
    stage.button("French (France), français")->click();
    stage.question.answers = {1, 0};
    stage.press("Install: FRENCH");
    QCOMPARE(stage.question.asked.front().informativeText, QString("The makers say so."));
    QVERIFY(stage.store.asked.isEmpty());
    stage.press("Install: FRENCH");
    QCOMPARE(stage.store.asked, QStringList("french"));
  }

  void meteredConnectionIsAskedAbout() {
    test::ModelsPageStage stage;
    stage.store.metered = true;
    stage.open();
    stage.question.answers = {1, 0};
    stage.press("Install: BIG-EN");
    QCOMPARE(stage.question.asked.front().message,
             QString("Download 134 MB over a metered connection?"));
    QVERIFY(stage.store.asked.isEmpty());
    stage.press("Install: BIG-EN");
    QCOMPARE(stage.store.asked, QStringList("big-en"));
  }

  void failedDownloadSaysWhyAndIsTriedAgain() {
    test::ModelsPageStage stage;
    stage.open();
    ModelState failed;
    failed.stage = ModelState::Stage::failed;
    failed.failure = "no connection to example.org";
    stage.store.setState(stage.model("big-en"), failed);
    QVERIFY(stage.shows("no connection to example.org"));
    stage.press("Try Again: BIG-EN");
    QCOMPARE(stage.store.asked, QStringList("big-en"));
  }

  void otherRevisionIsUpdated() {
    test::ModelsPageStage stage;
    stage.store.outdated += "big-en";
    stage.open();
    QVERIFY(stage.shows("An update is available."));
    stage.press("Update: BIG-EN");
    QCOMPARE(stage.store.asked, QStringList("big-en"));
  }

  void fileIsAdded() {
    test::ModelsPageStage stage;
    stage.open();
    stage.chosenFile = QUrl::fromLocalFile("/downloads/model.onnx");
    std::counting_semaphore<> mayEnd(0);
    stage.store.placer = [&mayEnd](const QString& path, const auto& progress, const auto&) {
      progress(0.5);
      mayEnd.acquire();
      return PlacedModelFile{path == "/downloads/model.onnx" ? "big-en" : "", {}};
    };
    stage.press("Add from File…");
    QVERIFY(stage.button("Cancel"));
    mayEnd.release();
    QTRY_VERIFY(stage.shows("“BIG-EN” is installed."));
    QVERIFY(stage.button("Add from File…"));
  }

  void unknownFileIsRefusedAndAnIncompleteModelSaysWhatIsMissing() {
    test::ModelsPageStage stage;
    stage.open();
    stage.chosenFile = QUrl::fromLocalFile("/downloads/photo.jpg");
    stage.store.placer = [](const QString&, const auto&, const auto&) -> PlacedModelFile {
      throw Failure("not a model");
    };
    stage.press("Add from File…");
    QTRY_VERIFY(stage.shows("not a model"));
    stage.store.placer = [](const QString&, const auto&, const auto&) {
      return PlacedModelFile{"big-en", {"decoder.onnx", "tokens.txt"}};
    };
    stage.press("Add from File…");
    QTRY_VERIFY(stage.shows("decoder.onnx, tokens.txt"));
  }

  void addingAFileIsCancelled() {
    test::ModelsPageStage stage;
    stage.open();
    stage.chosenFile = QUrl::fromLocalFile("/downloads/model.onnx");
    std::counting_semaphore<> hasEnded(0);
    stage.store.placer = [&hasEnded](const QString&, const auto&, const std::stop_token& stop) {
      while (!stop.stop_requested()) std::this_thread::yield();
      hasEnded.release();
      return PlacedModelFile{"big-en", {}};
    };
    stage.press("Add from File…");
    stage.press("Cancel");
    hasEnded.acquire();
    QVERIFY(stage.button("Add from File…"));
    QVERIFY(!stage.shows("is installed"));
  }
};

QTEST_MAIN(ModelInstallationTest)
#include "model_installation_test.moc"
