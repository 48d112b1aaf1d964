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
  std::shared_ptr<AssetInstallationRequest> request(const QString& locale) {
    return QCoro::waitFor(platform.assetInstallationRequest(platform.makeTranscriber(locale)));
  }

  test::ManualClock clock;
  std::shared_ptr<ScriptedRecognizerProvider> better =
      std::make_shared<ScriptedRecognizerProvider>(QStringList{"en_US", "fr_FR", "ko_KR"});
  std::shared_ptr<ScriptedRecognizerProvider> lesser =
      std::make_shared<ScriptedRecognizerProvider>(QStringList{"en_US"}, QStringList{"en_US"});
  LocalSpeechPlatform platform{{better, lesser}, clock};
};

}  // namespace

class LocalSpeechPlatformTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void theLocalesOfAllProvidersAreListedOnce() {
    Fixture f;
    QStringList locales = QCoro::waitFor(f.platform.supportedLocales());
    locales.sort();
    QCOMPARE(locales, QStringList({"en_US", "fr_FR", "ko_KR"}));
  }

  void equivalentLocales_data() {
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
  void equivalentLocales() {
    QFETCH(QString, identifier);
    QFETCH(QString, equivalent);
    const QStringList supported = {"fr_CA", "en_US", "fr_FR", "zh_CN"};
    QCOMPARE(equivalentLocale(identifier, supported).value_or(QString()), equivalent);
  }

  void anIdentifierOfAnyLengthIsTaken() {
    for (int length = 1; length < 300; ++length) {
      const QString identifier = "en_US@calendar=" + QString(length, u'a');
      QCOMPARE(equivalentLocale(identifier, {"en_US"}), std::optional(QString("en_US")));
    }
  }

  void nothingIsRequestedWhereSomethingIsInstalled() {
    Fixture f;
    f.better->request = std::make_shared<test::ScriptedInstallation>();
    QVERIFY(!f.request("en_US"));
    QVERIFY(f.better->requested.isEmpty());
    QCOMPARE(f.request("fr_FR"), f.better->request);
    QCOMPARE(f.better->requested, QStringList{"fr_FR"});
  }

  void theFormatIsSixteenKilohertzMono() {
    Fixture f;
    const auto format =
        QCoro::waitFor(f.platform.bestAvailableAudioFormat(f.platform.makeTranscriber("en_US")));
    QVERIFY(format.has_value());
    QCOMPARE(*format, (AudioFormat{AudioFormat::Sample::float32, 16000, 1, true}));
    QVERIFY(
        !QCoro::waitFor(f.platform.bestAvailableAudioFormat(f.platform.makeTranscriber("de_DE"))));
  }

  void theBestInstalledRecognizerIsUsed() {
    Fixture f;
    f.better->installedList << "en_US";
    const auto transcriber = f.platform.makeTranscriber("en_US");
    const auto analyzer = f.platform.makeAnalyzer(transcriber);
    test::await(analyzer->start(std::make_shared<AnalyzerInputStream>()));
    QTRY_COMPARE(f.better->script->alive.load(), 1);
    QCOMPARE(f.lesser->script->alive.load(), 0);
    test::await(analyzer->cancelAndFinishNow());
    QCOMPARE(f.better->script->alive.load(), 0);
  }

  void aLanguageWithoutARecognizerCannotStart() {
    Fixture f;
    const auto analyzer = f.platform.makeAnalyzer(f.platform.makeTranscriber("fr_FR"));
    QVERIFY_THROWS_EXCEPTION(Failure,
                             test::await(analyzer->start(std::make_shared<AnalyzerInputStream>())));
  }

  void aBetterModelIsFetchedAfterAMinuteOfCaptions() {
    Fixture f;
    const auto analyzer = f.platform.makeAnalyzer(f.platform.makeTranscriber("en_US"));
    test::await(analyzer->start(std::make_shared<AnalyzerInputStream>()));
    f.clock.advance(59s);
    QVERIFY(f.better->fetched.isEmpty());
    f.clock.advance(1s);
    QCOMPARE(f.better->fetched, QStringList{"en_US"});
    f.clock.advance(5min);
    QCOMPARE(f.better->fetched.size(), 1);
    QVERIFY(f.lesser->fetched.isEmpty());
  }

  void nothingIsFetchedForAShortRun() {
    Fixture f;
    const auto analyzer = f.platform.makeAnalyzer(f.platform.makeTranscriber("en_US"));
    test::await(analyzer->start(std::make_shared<AnalyzerInputStream>()));
    f.clock.advance(30s);
    test::await(analyzer->cancelAndFinishNow());
    f.clock.advance(60s);
    QVERIFY(f.better->fetched.isEmpty());
  }
};

QTEST_GUILESS_MAIN(LocalSpeechPlatformTest)
#include "local_speech_platform_test.moc"
