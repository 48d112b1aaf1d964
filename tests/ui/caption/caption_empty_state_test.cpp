// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_empty_state.h"

#include "captions/better_captions.h"
#include "language/localization.h"
#include "support/scripted_model_store.h"
#include "support/suite.h"
#include "ui/caption/caption_button.h"
#include "ui/caption/caption_status_line.h"
#include "ui/caption/caption_view.h"
#include "ui/caption/download_offer_view.h"
#include "ui/caption/failure_buttons.h"
#include "ui/caption/level_meter.h"
#include "ui/caption/panel_stage.h"
#include "ui/caption/transcript_layout.h"
#include "ui/caption/transcript_view.h"
#include "ui/common/download_text.h"

#include <QApplication>
#include <QLabel>
#include <QProgressBar>

using namespace velun;
using namespace velun::test;
using Stage = ModelState::Stage;

namespace {

/// A shown panel whose language has a better recognizer of 134 MB.
struct Fixture {
  Fixture() {
    RecognizerCandidate best;
    best.id = "best";
    best.model = "best";
    RecognizerCandidate present;
    present.isInstalled = true;
    speech.script->candidates = {best, present};
    better.update();
    stage.panel().setAttribute(Qt::WA_DontShowOnScreen);
    stage.controller->show();
    settle();
  }

  void setState(Stage state, std::int64_t done = 0, const QString& failure = {}) {
    ModelState next;
    next.stage = state;
    next.doneBytes = done;
    next.failure = failure;
    store.setState(model, next);
  }

  CaptionEmptyState& empty() const { return stage.view->emptyState(); }
  DownloadOfferView& offer() const { return empty().offerView(); }
  QString text() const { return offer().text().isVisible() ? offer().text().text() : QString(); }
  QStringList buttons() const {
    QStringList texts;
    for (const CaptionButton* button : {&offer().mainButton(), &offer().otherButton()}) {
      if (button->isVisible()) texts << button->text();
    }
    return texts;
  }

  static Model makeModel() {
    Model model;
    model.id = "best";
    ModelDownload download;
    download.bytes = 134'000'000;
    model.downloads = {download};
    return model;
  }

  Model model = makeModel();
  AppSettings settings;
  ScriptedSpeechPlatform speech;
  ScriptedModelStore store{QString()};
  BetterCaptions better{speech, ModelCatalogue({model}), store, settings};
  PanelStage stage{{}, nullptr, nullptr, &better};
};

}  // namespace

class CaptionEmptyStateTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void saysWhatIsCaptionedAndWhetherSoundArrives() {
    PanelStage stage;
    stage.controller->show();
    CaptionEmptyState& empty = stage.view->emptyState();
    QCOMPARE(empty.title().text(), QString("Computer Audio · English (United States)"));
    QCOMPARE(empty.hint().text(), QString("Press Start, or use the status icon."));
    QVERIFY(!empty.levelMeter().isVisible());
    stage.start();
    QCOMPARE(empty.title().text(), QString("Captions appear here"));
    QCOMPARE(empty.hint().text(), QString("Computer Audio · English (United States)"));
    QVERIFY(empty.levelMeter().isVisible());
    stage.settings.setUseMic(true);
    settle();
    QVERIFY(empty.hint().text().startsWith("Microphone"));
  }

  void givesWayToAFailureWithItsButtons_data() {
    QTest::addColumn<FailureStage>("failed");
    QTest::addColumn<bool>("choosesRecognizer");
    QTest::newRow("sound") << FailureStage::sound << false;
    QTest::newRow("recognition") << FailureStage::recognition << true;
    QTest::newRow("download") << FailureStage::download << false;
  }
  void givesWayToAFailureWithItsButtons() {
    QFETCH(FailureStage, failed);
    QFETCH(bool, choosesRecognizer);
    PanelStage stage;
    stage.controller->show();
    stage.start();
    stage.failure("It has failed. Try again.", failed);
    settle();
    CaptionEmptyState& empty = stage.view->emptyState();
    FailureButtons& buttons = stage.view->failureButtons();
    QVERIFY(!empty.title().isVisible());
    QVERIFY(!empty.startButton().isVisible());
    QVERIFY(!empty.hint().isVisible());
    QVERIFY(buttons.tryAgain().isVisible());
    QCOMPARE(buttons.chooseRecognizer().isVisible(), choosesRecognizer);
    QVERIFY2(!buttons.openSoundSettings().isVisible(), "no program for it is installed");
    // In the middle of the panel, the buttons below the text.
    const QRect text = stage.view->statusLine().geometry();
    QVERIFY(text.top() > stage.view->transcript().geometry().top() + 20);
    QVERIFY(buttons.geometry().top() >= text.bottom());
    QVERIFY(buttons.geometry().bottom() < stage.view->height() - 20);
    QVERIFY(buttons.tryAgain().x() > stage.view->width() / 4);
    buttons.tryAgain().click();
    settle();
    QVERIFY(stage.model->isRunning());
    QVERIFY(!buttons.isVisible());
    // The engine clears the status when it starts.
    stage.status(std::nullopt);
    settle();
    QVERIFY(empty.title().isVisible());
  }

  void aFailureAfterTheFirstWordsStaysBelowThem() {
    PanelStage stage;
    stage.controller->show();
    stage.start();
    stage.final("One.");
    stage.failure("It has failed. Try again.");
    settle();
    const FailureButtons& buttons = stage.view->failureButtons();
    QVERIFY(buttons.isVisible());
    QCOMPARE(buttons.geometry().bottom(), stage.view->rect().bottom());
    QCOMPARE(buttons.tryAgain().x(), TranscriptLayout::horizontalInset);
    QVERIFY(stage.view->transcript().geometry().bottom() < stage.view->statusLine().y());
    stage.final("Two.");
    QVERIFY(buttons.isVisible());
    stage.model->newSession();
    QVERIFY(!buttons.isVisible());
  }

  void aMissingDeviceOffersTheDefaultOne() {
    PanelStage stage;
    stage.settings.setOutput({"hdmi", "Television"});
    stage.controller->show();
    stage.start();
    stage.deviceMissing(true);
    stage.status("“Television” is not connected. Captions will go on when it is back.");
    settle();
    const FailureButtons& buttons = stage.view->failureButtons();
    QVERIFY(buttons.useDefaultDevice().isVisible());
    QVERIFY(!buttons.tryAgain().isVisible());
    QVERIFY(!buttons.chooseRecognizer().isVisible());
    QCOMPARE(buttons.useDefaultDevice().text(), QString("Use the Default Device"));
    buttons.useDefaultDevice().click();
    QCOMPARE(stage.settings.output(), DeviceChoice());
    stage.deviceMissing(false);
    QVERIFY(!buttons.isVisible());
  }

  void sourceLanguageAndStartAreVisible() {
    Fixture f;
    QCOMPARE(f.empty().title().text(), QString("Computer Audio · English (United States)"));
    QCOMPARE(f.empty().startButton().text(), QString("Start"));
    f.stage.settings.setUseMic(true);
    f.stage.settings.setLocaleID("ko_KR");
    QVERIFY(f.empty().title().text().startsWith("Microphone · Korean"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QVERIFY(f.empty().title().text().startsWith("마이크 · 한국어"));
    QCOMPARE(f.empty().startButton().text(), QString("시작"));
  }

  void startStartsCaptions() {
    Fixture f;
    f.empty().startButton().setFocus();
    f.empty().startButton().click();
    settle();
    QVERIFY(f.stage.model->isRunning());
    QVERIFY(!f.empty().startButton().isVisible());
    QCOMPARE(f.empty().title().text(), QString("Captions appear here"));
    // The offer stays until the first words.
    QVERIFY(f.offer().isVisible());
    QVERIFY(!f.stage.controller->headerShown());
  }

  void firstWordsReplaceEverything() {
    Fixture f;
    f.stage.start();
    f.offer().mainButton().setFocus();
    f.stage.draft("hello");
    settle();
    QVERIFY(!f.empty().isVisible());
    QVERIFY(!f.stage.controller->headerShown());
    f.stage.draft("");
    settle();
    QVERIFY(f.empty().isVisible());
  }

  void nothingIsOfferedWithoutABetterRecognizer() {
    Fixture f;
    f.store.setInstalled(f.model);
    QVERIFY(!f.offer().isVisible());
  }

  void oneClickDownloads() {
    Fixture f;
    QCOMPARE(f.buttons(), QStringList({"Better captions: download 134 MB", "Not Now"}));
    QCOMPARE(f.text(), QString());
    QVERIFY(f.store.asked.isEmpty());
    f.offer().mainButton().click();
    QCOMPARE(f.store.asked, QStringList("best"));
  }

  void modelThatIsTooLargeForTheComputerIsSaid() {
    Fixture f;
    f.speech.script->candidates.pop_back();
    f.better.update();
    QCOMPARE(f.text(), QString("Captions in this language need a download."));
    f.speech.script->candidates.front().isSuitable = false;
    f.better.update();
    QCOMPARE(f.text(), QString("Captions in this language need a large model. They may be slow on "
                               "this computer."));
    QCOMPARE(f.buttons(), QStringList("Download 134 MB"));
  }

  void licenceThatMustBeReadLeadsToTheModels() {
    Fixture f;
    f.speech.script->candidates.front().needsAgreement = true;
    f.speech.script->candidates.pop_back();
    f.better.update();
    QVERIFY(f.text().contains("license"));
    QCOMPARE(f.buttons(), QStringList("Languages & Models…"));
    QStringList requested;
    const QAction& models = f.stage.commands.action(AppCommand::showModels);
    QObject::connect(&models, &QAction::triggered, [&requested] { requested << "models"; });
    f.offer().mainButton().click();
    QCOMPARE(requested, QStringList("models"));
    QVERIFY(f.store.asked.isEmpty());
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(f.buttons(), QStringList("언어 및 모델…"));
  }

  void progressIsShownAndControlled() {
    Fixture f;
    f.offer().mainButton().click();
    ModelState half;
    half.stage = Stage::downloading;
    half.doneBytes = 67'000'000;
    half.bytesPerSecond = 3'200'000;
    f.store.setState(f.model, half);
    QCOMPARE(f.text(), QString("67 of 134 MB · 3.2 MB/s · 21 s left"));
    QCOMPARE(f.offer().progress().value(), 500);
    QVERIFY(!f.offer().progress().accessibleName().isEmpty());
    QCOMPARE(f.buttons(), QStringList({"Pause", "Cancel"}));
    f.offer().mainButton().click();
    QCOMPARE(f.store.paused, QStringList("best"));
    f.setState(Stage::paused, 67'000'000);
    QCOMPARE(f.text(), QString("Paused: 67 of 134 MB"));
    QCOMPARE(f.buttons(), QStringList({"Continue", "Cancel"}));
    f.offer().mainButton().click();
    QCOMPARE(f.store.asked.size(), 2);
    f.setState(Stage::verifying, 134'000'000);
    QCOMPARE(f.text(), QString("Checking the download…"));
    QCOMPARE(f.buttons(), QStringList("Cancel"));
    f.offer().otherButton().click();
    QCOMPARE(f.store.cancelled, QStringList("best"));
    f.setState(Stage::absent);
    QCOMPARE(f.buttons().size(), 2);
  }

  void finishedDownloadIsToldUntilTheFirstWords() {
    Fixture f;
    f.offer().mainButton().click();
    f.setState(Stage::downloading, 1);
    f.store.setInstalled(f.model);
    QCOMPARE(f.text(), QString("Better captions are ready."));
    QCOMPARE(f.buttons(), QStringList());
    f.stage.start();
    f.stage.draft("hello");
    settle();
    f.stage.draft("");
    settle();
    QVERIFY(!f.offer().isVisible());
  }

  void failureSaysWhatToDoInPlace() {
    Fixture f;
    f.offer().mainButton().click();
    f.setState(Stage::failed, 10, "The disk is full. Free some space.");
    QCOMPARE(f.text(), QString("The disk is full. Free some space."));
    QCOMPARE(f.buttons(), QStringList({"Try Again", "Not Now"}));
    f.offer().mainButton().click();
    QCOMPARE(f.store.asked.size(), 2);
  }

  void declinedOfferGoesAway() {
    Fixture f;
    f.offer().otherButton().setFocus();
    f.offer().otherButton().click();
    QVERIFY(!f.offer().isVisible());
    QVERIFY(f.empty().startButton().isVisible());
    QVERIFY(!f.stage.controller->headerShown());
    QVERIFY(f.store.asked.isEmpty());
  }

  void meteredConnectionIsAskedAbout() {
    Fixture f;
    f.store.metered = true;
    f.offer().mainButton().click();
    QVERIFY(f.store.asked.isEmpty());
    QCOMPARE(f.text(), QString("This connection is metered."));
    QCOMPARE(f.buttons(), QStringList({"Download 134 MB Anyway", "Not Now"}));
    f.offer().otherButton().click();
    QCOMPARE(f.buttons(), QStringList({"Better captions: download 134 MB", "Not Now"}));
    f.offer().mainButton().click();
    f.offer().mainButton().click();
    QCOMPARE(f.store.asked, QStringList("best"));
  }

  void languageThatNeedsTheDownloadSaysSo() {
    Fixture f;
    f.speech.script->candidates.pop_back();
    f.better.update();
    QCOMPARE(f.text(), QString("Captions in this language need a download."));
    QCOMPARE(f.buttons(), QStringList("Download 134 MB"));
  }

  void everythingFitsIntoTheSmallestPanel() {
    Fixture f;
    const QString longest =
        "The model couldn’t be downloaded: no connection to models.example.org. Check the network "
        "connection, then try again.";
    f.setState(Stage::failed, 1, longest);
    f.stage.panel().resize(f.stage.panel().minimumSize());
    settle();
    QVERIFY(f.empty().minimumSizeHint().height() <= f.empty().height());
    for (const QWidget* part : {static_cast<const QWidget*>(&f.offer().text()),
                                static_cast<const QWidget*>(&f.offer().mainButton()),
                                static_cast<const QWidget*>(&f.empty().startButton())}) {
      const QRect place(part->mapTo(f.stage.view, QPoint()), part->size());
      QVERIFY(f.stage.view->transcript().geometry().contains(place));
    }
  }

  void timeLeftIsRounded_data() {
    QTest::addColumn<int>("seconds");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("korean");
    QTest::newRow("seconds") << 59 << "59 s left"
                             << "59초 남음";
    QTest::newRow("minutes") << 61 << "2 min left"
                             << "2분 남음";
    QTest::newRow("hours") << 3601 << "2 h left"
                           << "2시간 남음";
  }
  void aDownloadBeginsWithItsFirstByte() {
    ModelState state;
    state.stage = Stage::downloading;
    state.totalBytes = 134'000'000;
    QCOMPARE(downloadText(state), "Starting the download…");
    state.doneBytes = 1'000'000;
    QCOMPARE(downloadText(state), "1 of 134 MB");
  }

  void timeLeftIsRounded() {
    QFETCH(int, seconds);
    QFETCH(QString, english);
    QFETCH(QString, korean);
    ModelState state;
    state.stage = Stage::downloading;
    state.totalBytes = 134'000'000;
    state.secondsLeft = seconds;
    QCOMPARE(downloadText(state), "0 of 134 MB · " + english);
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(downloadText(state), "134MB 중 0MB · " + korean);
  }
};

QTEST_MAIN(CaptionEmptyStateTest)
#include "caption_empty_state_test.moc"
