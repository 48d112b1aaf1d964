// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/model_fixture.h"
#include "support/suite.h"

using namespace velun;
using test::settle;

namespace {

/// A caption model that downloads a speech model at every start, until the test releases it.
struct Fixture : test::ModelFixture {
  explicit Fixture(const std::function<void(AppSettings&)>& prepare = {}) : ModelFixture(prepare) {
    engine->downloads = true;
    engine->holdsStarts = true;
  }

  bool isOff() const { return !model->isRunning() && !model->isTransitioning(); }
};

void translateToKorean(AppSettings& settings) {
  settings.setTranslate(true);
}

}  // namespace

class CaptionDownloadsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void stoppingCancelsTheDownload() {
    Fixture fixture;
    fixture.start();
    QVERIFY(fixture.model->isRunning() && !fixture.model->isSwitching());
    fixture.status(QString("Downloading speech model…"));
    fixture.model->stop();
    QVERIFY(fixture.engine->isStopRequested);
    QVERIFY(!fixture.model->isRunning() && fixture.model->isSwitching());
    settle();
    QVERIFY(fixture.isOff() && !fixture.model->isSwitching());
    QVERIFY(!fixture.model->status());
    QVERIFY(!fixture.model->session().endedAt);
  }

  void captionsCanStartAgainAfterACancelledDownload() {
    Fixture fixture;
    fixture.start();
    fixture.stop();
    fixture.start();
    fixture.engine->release();
    settle();
    QVERIFY(fixture.model->isRunning() && !fixture.model->isTransitioning());
    QVERIFY(fixture.engine->isStarted);
  }

  void settingsChangedDuringADownloadApplyAtOnce_data() {
    QTest::addColumn<QString>("setting");
    QTest::addColumn<QString>("start");
    QTest::newRow("language") << "language"
                              << "start ko_KR computer";
    QTest::newRow("input") << "input"
                           << "start en_US microphone";
  }
  void settingsChangedDuringADownloadApplyAtOnce() {
    QFETCH(QString, setting);
    Fixture fixture;
    fixture.start();
    fixture.takeSignals();
    fixture.engine->holdsStarts = false;
    if (setting == "language") fixture.settings.setLocaleID("ko_KR");
    if (setting == "input") fixture.settings.setUseMic(true);
    settle();
    QVERIFY(fixture.model->isRunning() && !fixture.model->isTransitioning());
    QTEST(fixture.engine->calls[fixture.engine->calls.size() - 2], "start");
    QVERIFY(fixture.engine->isStarted);
    QVERIFY(!fixture.takeSignals().contains("isRunning"));
  }

  void failedDownloadTurnsCaptionsOff() {
    Fixture fixture;
    fixture.start();
    fixture.engine->fail("no connection");
    settle();
    QVERIFY(fixture.isOff());
    QCOMPARE(fixture.model->status(), std::optional<QString>("no connection"));
  }

  void stoppingCancelsTheDownloadOfATranslationModel() {
    Fixture fixture(translateToKorean);
    fixture.engine->holdsStarts = false;
    fixture.translation.prepareScript = [](test::TranslationScript& script) {
      script.waitsForPreparation = true;
    };
    fixture.start();
    QVERIFY(fixture.translationScript().isOpen);
    fixture.stop();
    QVERIFY(!fixture.translationScript().isOpen);
    QVERIFY(!fixture.model->translator().isActive());
    QVERIFY(fixture.translationScript().prepared.isAnswered());
  }

  void stoppingDuringBothDownloadsCancelsBoth() {
    Fixture fixture(translateToKorean);
    fixture.translation.prepareScript = [](test::TranslationScript& script) {
      script.waitsForPreparation = true;
    };
    fixture.start();
    QVERIFY(fixture.translationScript().isOpen);
    fixture.stop();
    QVERIFY(fixture.isOff());
    QVERIFY(!fixture.translationScript().isOpen);
  }

  void failedStartEndsTheDownloadOfATranslationModel() {
    Fixture fixture(translateToKorean);
    fixture.start();
    fixture.engine->fail("no connection");
    settle();
    QVERIFY(!fixture.translationScript().isOpen);
  }

  void linesAreStillTranslatedAfterTheStop() {
    Fixture fixture(translateToKorean);
    fixture.engine->holdsStarts = false;
    fixture.translation.prepareScript = [](test::TranslationScript& script) {
      script.waitsForPreparation = true;
    };
    fixture.start();
    fixture.engine->lastWords = {FinalEvent{"One.", "en_US", AudioInput::computer}};
    fixture.stop();
    QVERIFY(fixture.translationScript().isOpen);
    fixture.translationScript().prepared.complete(true);
    settle();
    fixture.translationScript().requests.at(0).succeed("하나.");
    settle();
    QCOMPARE(fixture.translationOf(0), QString("하나."));
  }
};

QTEST_GUILESS_MAIN(CaptionDownloadsTest)
#include "caption_downloads_test.moc"
