// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/better_captions.h"

#include "settings/app_settings.h"
#include "support/memory_preferences.h"
#include "support/scripted_model_store.h"
#include "support/scripted_speech_platform.h"
#include "support/suite.h"

#include <QSignalSpy>

using namespace velun;
using namespace velun::test;
using Stage = ModelState::Stage;

namespace {

Model makeModel(const QString& id, ModelKind kind, std::int64_t bytes) {
  Model model;
  model.id = id;
  model.kind = kind;
  model.languages = {"en"};
  model.options = {{"punctuation", "none"}};
  ModelDownload download;
  download.bytes = bytes;
  model.downloads = {download};
  return model;
}

/// A recognizer that needs a large and a small model, better than the installed one.
struct Fixture {
  Fixture() {
    RecognizerCandidate best;
    best.id = "best";
    best.model = "large";
    RecognizerCandidate present;
    present.id = "present";
    present.isInstalled = true;
    speech.script->candidates = {best, present};
  }

  BetterCaptions& open() {
    better = std::make_unique<BetterCaptions>(speech, ModelCatalogue({large, small}), store,
                                              settings, &preferences);
    return *better;
  }

  static ModelState stateOf(Stage stage, std::int64_t done = 0) {
    ModelState state;
    state.stage = stage;
    state.doneBytes = done;
    return state;
  }

  Model large = makeModel("large", ModelKind::recognition, 100);
  const Model small = makeModel("small", ModelKind::punctuation, 20);
  MemoryPreferences preferences;
  AppSettings settings{&preferences};
  ScriptedSpeechPlatform speech;
  ScriptedModelStore store{QString()};
  std::unique_ptr<BetterCaptions> better;
};

}  // namespace

class BetterCaptionsTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void sizeIncludesEveryModel() {
    Fixture f;
    const auto offer = f.open().offer();
    QVERIFY(offer);
    QCOMPARE(offer->recognizer, QString("best"));
    QCOMPARE(offer->bytes, std::int64_t(120));
    QVERIFY(!offer->isNeeded);
    QCOMPARE(offer->state.stage, Stage::absent);
    QVERIFY(f.store.asked.isEmpty());
  }

  void installedModelIsNotCounted() {
    Fixture f;
    f.store.present += "large";
    QCOMPARE(f.open().offer()->bytes, std::int64_t(20));
  }

  void nothingIsOfferedWhenTheBestIsInstalled() {
    Fixture f;
    f.store.present = {"large", "small"};
    QVERIFY(!f.open().offer());
  }

  void nothingIsOfferedThatThisMachineCannotRun() {
    Fixture f;
    f.speech.script->candidates[0].isSuitable = false;
    QVERIFY(!f.open().offer());
  }

  void nothingIsOfferedWhoseLicenceMustBeRead() {
    Fixture f;
    f.speech.script->candidates[0].needsAgreement = true;
    QVERIFY(!f.open().offer());
  }

  void nextRecognizerIsOfferedInstead() {
    Fixture f;
    RecognizerCandidate unclear;
    unclear.id = "unclear";
    unclear.model = "unclear";
    unclear.needsAgreement = true;
    f.speech.script->candidates.insert(f.speech.script->candidates.begin(), unclear);
    QCOMPARE(f.open().offer()->recognizer, QString("best"));
    f.speech.script->candidates.back().isInstalled = false;
    f.better->update();
    QCOMPARE(f.better->offer()->recognizer, QString("best"));
    QVERIFY(f.better->offer()->isNeeded && !f.better->offer()->needsAgreement);
  }

  void onlyDownloadWhoseLicenceMustBeReadIsNotStarted() {
    Fixture f;
    f.speech.script->candidates[0].needsAgreement = true;
    f.speech.script->candidates.pop_back();
    BetterCaptions& better = f.open();
    QVERIFY(better.offer()->isNeeded && better.offer()->needsAgreement);
    better.download();
    QVERIFY(f.store.asked.isEmpty());
    // The user has agreed in the settings.
    f.store.setState(f.large, Fixture::stateOf(Stage::downloading, 10));
    QVERIFY(!better.offer()->needsAgreement);
    QCOMPARE(better.offer()->state.stage, Stage::downloading);
    better.pause();
    QVERIFY(f.store.paused.contains("large"));
  }

  void languageWithoutRecognizerNeedsTheDownload() {
    Fixture f;
    f.speech.script->candidates[1].isInstalled = false;
    f.speech.script->candidates[0].isSuitable = false;
    QVERIFY(f.open().offer()->isNeeded);
    f.better->decline();
    QVERIFY(f.better->offer());
  }

  void downloadIsFollowedToItsEnd() {
    Fixture f;
    BetterCaptions& better = f.open();
    const QSignalSpy changes(&better, &BetterCaptions::changed);
    better.download();
    QCOMPARE(f.store.asked, QStringList({"large", "small"}));
    ModelState half = Fixture::stateOf(Stage::downloading, 40);
    half.bytesPerSecond = 10;
    f.store.setState(f.large, half);
    f.store.setInstalled(f.small);
    QCOMPARE(better.offer()->bytes, std::int64_t(120));
    QCOMPARE(better.offer()->state.stage, Stage::downloading);
    QCOMPARE(better.offer()->state.doneBytes, std::int64_t(40));
    QCOMPARE(better.offer()->state.secondsLeft, std::optional(8));
    f.store.setState(f.large, Fixture::stateOf(Stage::verifying, 100));
    QCOMPARE(better.offer()->state.stage, Stage::verifying);
    f.store.setInstalled(f.large);
    QCOMPARE(better.offer()->state.stage, Stage::installed);
    QVERIFY(changes.count() >= 3);
    better.acknowledge();
    QVERIFY(!better.offer());
  }

  void failureOfOneModelIsShown() {
    Fixture f;
    BetterCaptions& better = f.open();
    better.download();
    f.store.setState(f.large, Fixture::stateOf(Stage::downloading, 40));
    ModelState failed = Fixture::stateOf(Stage::failed);
    failed.failure = "no space";
    f.store.setState(f.small, failed);
    QCOMPARE(better.offer()->state.stage, Stage::failed);
    QCOMPARE(better.offer()->state.failure, QString("no space"));
  }

  void downloadCanBePausedAndCancelled() {
    Fixture f;
    BetterCaptions& better = f.open();
    better.download();
    better.pause();
    QCOMPARE(f.store.paused, QStringList({"large", "small"}));
    better.cancel();
    QCOMPARE(f.store.cancelled, QStringList({"large", "small"}));
  }

  void declinedOfferStaysAwayInLaterRuns() {
    Fixture f;
    f.open().decline();
    QVERIFY(!f.better->offer());
    QVERIFY(!f.open().offer());
    // A download that was started in the settings is shown.
    f.store.setState(f.large, Fixture::stateOf(Stage::downloading, 1));
    QVERIFY(f.better->offer());
    // Another recognizer is offered.
    f.store.setState(f.large, {});
    f.speech.script->candidates[0].id = "even better";
    f.better->update();
    QVERIFY(f.better->offer());
  }

  void languageWithoutAnythingHasNoOffer() {
    Fixture f;
    f.speech.script->candidates.clear();
    QVERIFY(!f.open().offer());
    f.better->download();
    f.better->decline();
    QVERIFY(f.store.asked.isEmpty());
  }
};

QTEST_GUILESS_MAIN(BetterCaptionsTest)
#include "better_captions_test.moc"
