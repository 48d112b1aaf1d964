// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/local_speech_platform.h"

#include "platform/speech/locale_equivalence.h"
#include "support/await.h"
#include "support/manual_clock.h"
#include "support/scripted_recognizer_backend.h"
#include "support/scripted_speech_platform.h"
#include "support/suite.h"

using namespace velun;
using namespace std::chrono_literals;
using test::ScriptedRecognizerProvider;

namespace {

/// A better and a lesser provider behind one platform.
struct Fixture {
  Fixture() {
    better->id = "better";
    lesser->id = "lesser";
  }
  std::unique_ptr<SpeechRun> start() {
    return platform.start("en_US", std::make_shared<SpeechInput>());
  }

  test::ManualClock clock;
  std::shared_ptr<ScriptedRecognizerProvider> better =
      std::make_shared<ScriptedRecognizerProvider>(QStringList{"en_US", "fr_FR", "ko_KR"});
  std::shared_ptr<ScriptedRecognizerProvider> lesser =
      std::make_shared<ScriptedRecognizerProvider>(QStringList{"en_US"}, QStringList{"en_US"});
  std::shared_ptr<RecognizerPreferences> preferences = std::make_shared<RecognizerPreferences>();
  LocalSpeechPlatform platform{
      {better, lesser}, clock, preferences, {.cores = 2, .memoryBytes = 8'000'000'000}};

  QStringList order() const {
    QStringList ids;
    for (const RecognizerCandidate& each : platform.candidates("en_US")) ids << each.id;
    return ids;
  }
};

}  // namespace

class LocalSpeechPlatformTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void localesOfAllProvidersAreListedOnce() {
    Fixture f;
    QStringList locales = QCoro::waitFor(f.platform.supportedLocales());
    locales.sort();
    QCOMPARE(locales, QStringList({"en_US", "fr_FR", "ko_KR"}));
  }

  void findsEquivalentLocales_data() {
    QTest::addColumn<QString>("identifier");
    QTest::addColumn<QString>("equivalent");
    QTest::newRow("exact") << "fr_FR"
                           << "fr_FR";
    QTest::newRow("hyphen") << "fr-FR"
                            << "fr_FR";
    QTest::newRow("other region") << "en_GB"
                                  << "en_US";
    QTest::newRow("language alone") << "en"
                                    << "en_US";
    QTest::newRow("simplified") << "zh_Hans_SG"
                                << "zh_CN";
    QTest::newRow("traditional") << "zh_TW"
                                 << "";
    QTest::newRow("traditional by script") << "zh_Hant"
                                           << "";
    QTest::newRow("unknown") << "de_DE"
                             << "";
    QTest::newRow("empty") << ""
                           << "";
  }
  void findsEquivalentLocales() {
    QFETCH(QString, identifier);
    QFETCH(QString, equivalent);
    const QStringList supported = {"fr_CA", "en_US", "fr_FR", "zh_CN"};
    QCOMPARE(equivalentLocale(identifier, supported).value_or(QString()), equivalent);
  }

  void acceptsIdentifiersOfAnyLength() {
    for (int length = 1; length < 300; ++length) {
      const QString identifier = "en_US@calendar=" + QString(length, u'a');
      QCOMPARE(equivalentLocale(identifier, {"en_US"}), std::optional(QString("en_US")));
    }
  }

  void downloadIsOfferedOnlyWhereNothingIsInstalled() {
    Fixture f;
    f.better->model = std::make_shared<test::ScriptedModelOffer>();
    const std::optional<SpeechSupport> installed = f.platform.support("en-GB");
    QVERIFY(installed);
    QCOMPARE(installed->locale, QString("en_US"));
    QVERIFY(!installed->offer);
    QVERIFY(f.better->asked.isEmpty());
    const std::optional<SpeechSupport> missing = f.platform.support("fr_FR");
    QVERIFY(missing);
    QCOMPARE(missing->offer, f.better->model);
    QVERIFY(!f.platform.support("de_DE"));
  }

  void modelWhoseLicenceMustBeAgreedToIsNotDownloadedUnasked() {
    Fixture f;
    f.better->model = std::make_shared<test::ScriptedModelOffer>();
    f.better->needsAgreement = true;
    const std::optional<SpeechSupport> support = f.platform.support("fr_FR");
    QVERIFY(support && !support->offer && support->needsAgreement);
    QVERIFY(f.better->asked.isEmpty());
    QVERIFY(!f.platform.support("en_US")->needsAgreement);

    f.lesser->supportedList << "fr_FR";
    f.lesser->model = std::make_shared<test::ScriptedModelOffer>();
    const std::optional<SpeechSupport> other = f.platform.support("fr_FR");
    QCOMPARE(other->offer, f.lesser->model);
    QVERIFY(!other->needsAgreement);
    QVERIFY(f.better->asked.isEmpty());
  }

  void bestInstalledRecognizerIsUsed() {
    Fixture f;
    f.better->installedList << "en_US";
    const std::unique_ptr<SpeechRun> run = f.start();
    QTRY_COMPARE(f.better->script->alive.load(), 1);
    QCOMPARE(f.lesser->script->alive.load(), 0);
    test::await(run->cancel());
    QCOMPARE(f.better->script->alive.load(), 0);
  }

  void candidatesComeInTheOrderOfUse() {
    Fixture f;
    QCOMPARE(f.order(), QStringList({"better", "lesser"}));
    QVERIFY(!f.platform.candidates("en_US")[0].isInstalled);
    QVERIFY(f.platform.candidates("en_US")[1].isInstalled);
    f.preferences->setChoice("en_US", "lesser");
    QCOMPARE(f.order(), QStringList({"lesser", "better"}));
    QVERIFY(f.platform.candidates("en_US")[0].isChosen);
    f.preferences->setChoice("en_US", "no longer in the catalogue");
    QCOMPARE(f.order(), QStringList({"better", "lesser"}));
    QVERIFY(f.platform.candidates("xx_XX").empty());
  }

  void recognizerThatIsTooSlowHereComesLast() {
    Fixture f;
    f.better->modelBytes = 650'000'000;
    QCOMPARE(f.order(), QStringList({"lesser", "better"}));
    QVERIFY(!f.platform.candidates("en_US")[1].isSuitable);
    f.preferences->addRealTimeFactor("better", 0.3);
    QCOMPARE(f.order(), QStringList({"better", "lesser"}));
    f.preferences->addRealTimeFactor("lesser", 0.1);
    f.preferences->addRealTimeFactor("better", 1.4);
    // The computer may have been busy with something else.
    QCOMPARE(f.order(), QStringList({"better", "lesser"}));
    f.preferences->addRealTimeFactor("better", 1.4);
    QCOMPARE(f.order(), QStringList({"lesser", "better"}));
  }

  void chosenRecognizerIsUsedAlthoughABetterOneIsInstalled() {
    Fixture f;
    f.better->installedList << "en_US";
    f.preferences->setChoice("en_US", "lesser");
    const std::unique_ptr<SpeechRun> run = f.start();
    QTRY_COMPARE(f.lesser->script->alive.load(), 1);
    QCOMPARE(f.better->script->alive.load(), 0);
    test::await(run->cancel());
  }

  void chosenRecognizerThatIsGoneGivesWayToAnInstalledOne() {
    Fixture f;
    f.preferences->setChoice("en_US", "better");
    const std::unique_ptr<SpeechRun> run = f.start();
    QTRY_COMPARE(f.lesser->script->alive.load(), 1);
    test::await(run->cancel());
  }

  void downloadOfACandidateComesFromItsProvider() {
    Fixture f;
    f.better->model = std::make_shared<test::ScriptedModelOffer>();
    QCOMPARE(f.platform.offer("en_US", "better"), f.better->model);
    QVERIFY(!f.platform.offer("en_US", "lesser"));
    QVERIFY(!f.platform.offer("en_US", "unknown"));
  }

  void languageWithoutModelCannotStart() {
    Fixture f;
    QVERIFY_THROWS_EXCEPTION(Failure, f.platform.start("fr_FR", std::make_shared<SpeechInput>()));
  }

  void betterModelThatWasInstalledTakesOver() {
    Fixture f;
    const std::unique_ptr<SpeechRun> run = f.start();
    QTRY_COMPARE(f.lesser->script->alive.load(), 1);
    f.better->installedList << "en_US";
    f.platform.updateRuns();
    QTRY_COMPARE(f.better->script->alive.load(), 1);
    QTRY_COMPARE(f.lesser->script->alive.load(), 0);
    test::await(run->cancel());
  }

  void betterModelWaitsForItsPunctuation() {
    Fixture f;
    const std::unique_ptr<SpeechRun> run = f.start();
    QTRY_COMPARE(f.lesser->script->alive.load(), 1);
    f.better->installedList << "en_US";
    f.better->isIncomplete = true;
    f.platform.updateRuns();
    f.preferences->setChoice("en_US", "better");
    QCOMPARE(f.better->script->alive.load(), 0);
    f.better->isIncomplete = false;
    f.platform.updateRuns();
    QTRY_COMPARE(f.better->script->alive.load(), 1);
    // It is used already.
    f.better->isIncomplete = true;
    f.platform.updateRuns();
    test::await(run->finish());
    QCOMPARE(f.lesser->script->alive.load(), 0);
  }

  void chosenRecognizerTakesOver() {
    Fixture f;
    f.better->installedList << "en_US";
    const std::unique_ptr<SpeechRun> run = f.start();
    QTRY_COMPARE(f.better->script->alive.load(), 1);
    f.preferences->setChoice("en_US", "lesser");
    QTRY_COMPARE(f.better->script->alive.load(), 0);
    QTRY_COMPARE(f.lesser->script->alive.load(), 1);
    test::await(run->cancel());
  }

  void failedRecognizerIsReported() {
    Fixture f;
    f.better->installedList << "en_US";
    f.better->script->failsToLoad = true;
    QStringList failed;
    QObject::connect(
        &f.platform, &LocalSpeechPlatform::recognizerFailed,
        [&failed](const QString& id, const QString& locale) { failed << id << locale; });
    const std::unique_ptr<SpeechRun> run = f.start();
    QTRY_COMPARE(failed, QStringList({"better", "en_US"}));
    QTRY_COMPARE(f.lesser->script->alive.load(), 1);
    test::await(run->cancel());
  }

  void repairedRecognizerIsUsedAgain() {
    Fixture f;
    f.better->installedList << "en_US";
    f.better->script->failsToLoad = true;
    const std::unique_ptr<SpeechRun> run = f.start();
    QTRY_COMPARE(f.lesser->script->alive.load(), 1);
    f.better->installedList.clear();
    f.platform.updateRuns();
    f.better->script->failsToLoad = false;
    f.better->installedList << "en_US";
    f.platform.forgetFailure("better");
    f.platform.updateRuns();
    QTRY_COMPARE(f.better->script->alive.load(), 1);
    QTRY_COMPARE(f.lesser->script->alive.load(), 0);
    test::await(run->cancel());
  }

  void runsShowABriefNotice() {
    Fixture f;
    const std::unique_ptr<SpeechRun> run = f.start();
    QStringList notices;
    QObject::connect(run.get(), &SpeechRun::noticedBriefly,
                     [&notices](const QString& notice) { notices << notice; });
    f.platform.showBriefly("Damaged");
    QCOMPARE(notices, QStringList("Damaged"));
    test::await(run->cancel());
  }

  void betterModelIsNotFetchedUnasked() {
    Fixture f;
    f.better->model = std::make_shared<test::ScriptedModelOffer>();
    const std::unique_ptr<SpeechRun> run = f.start();
    QTRY_COMPARE(f.lesser->script->alive.load(), 1);
    f.clock.advance(24h);
    QVERIFY(f.better->asked.isEmpty());
    QCOMPARE(f.better->script->alive.load(), 0);
    test::await(run->cancel());
  }
};

QTEST_GUILESS_MAIN(LocalSpeechPlatformTest)
#include "local_speech_platform_test.moc"
