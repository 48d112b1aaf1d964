// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/engine_fixture.h"
#include "language/localization.h"
#include "support/failure_of.h"
#include "support/settle.h"
#include "support/suite.h"

using namespace velun;

namespace {

/// An engine whose speech model must be downloaded, with a log of `isDownloading`.
struct Fixture : test::EngineFixture {
  Fixture() {
    speech.script->offer = offer;
    QObject::connect(engine.get(), &SpeechRecognizing::isDownloadingChanged,
                     [this] { events << (engine->isDownloading() ? "downloading" : "done"); });
  }

  QCoro::Task<> beginStart() {
    QCoro::Task<> starting = engine->start("en_US", {}, stopSource.get_token());
    test::settle();
    return starting;
  }

  std::shared_ptr<test::ScriptedModelOffer> offer = std::make_shared<test::ScriptedModelOffer>();
};

const QStringList kDownloading = {"status -", "status Downloading speech model…", "downloading"};
const QStringList kDone = {"status -", "done"};

}  // namespace

class EngineDownloadsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void downloadShowsOneStatusText() {
    Fixture f;
    QCoro::Task<> starting = f.beginStart();
    QCOMPARE(f.events, kDownloading);
    QCOMPARE(f.speech.script->calls.size(), 1);
    f.offer->outcome.complete(true);
    test::await(std::move(starting));
    QCOMPARE(f.events.mid(3), kDone);
    f.stop();
    Localization::shared().setLanguage(AppLanguage::korean);
    f.offer->outcome = {};
    QCoro::Task<> again = f.beginStart();
    QCOMPARE(f.events[f.events.size() - 2], QString("status 음성 모델 다운로드 중…"));
    f.stopSource.request_stop();
    f.offer->outcome.fail(std::make_exception_ptr(Cancelled()));
    QVERIFY_THROWS_EXCEPTION(Cancelled, test::await(std::move(again)));
  }

  void licenceThatMustBeAgreedToFailsTheStart() {
    Fixture f;
    f.speech.script->needsAgreement = true;
    QVERIFY(f.start().contains("Languages & Models"));
    QVERIFY(f.start().startsWith("Captions in English"));
    QCOMPARE(f.speech.script->calls, QStringList({"support en_US", "support en_US"}));
    QVERIFY(!f.events.contains("downloading"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QVERIFY(f.start().contains("‘언어 및 모델’"));
  }

  void failedDownloadFailsTheStart() {
    Fixture f;
    f.offer->outcome.fail(std::make_exception_ptr(Failure("No connection")));
    QCOMPARE(f.start(), QString("No connection"));
    QCOMPARE(f.speech.script->calls.size(), 1);
    QCOMPARE(f.events, kDownloading + kDone);
  }

  void stopRequestReachesTheDownload() {
    Fixture f;
    QCoro::Task<> starting = f.beginStart();
    f.stopSource.request_stop();
    QVERIFY(f.offer->stopToken.stop_requested());
    f.offer->outcome.fail(std::make_exception_ptr(Cancelled()));
    QVERIFY_THROWS_EXCEPTION(Cancelled, test::await(std::move(starting)));
    QCOMPARE(f.speech.script->calls.size(), 1);
    QCOMPARE(f.events, kDownloading + kDone);
  }

  void stopRequestCountsAlsoWhenTheDownloadHasJustEnded() {
    Fixture f;
    QCoro::Task<> starting = f.beginStart();
    f.offer->outcome.complete(true);
    f.stopSource.request_stop();
    QVERIFY_THROWS_EXCEPTION(Cancelled, test::await(std::move(starting)));
    QCOMPARE(f.speech.script->calls.size(), 1);
    QVERIFY(!f.engine->isDownloading());
  }

  void stopDuringTheDownloadEndsTheStart() {
    Fixture f;
    QCoro::Task<> starting = f.beginStart();
    f.stop();
    QCOMPARE(f.events, kDownloading + kDone);
    f.offer->outcome.complete(true);
    QVERIFY_THROWS_EXCEPTION(Cancelled, test::await(std::move(starting)));
    QVERIFY(f.audio.script->calls.isEmpty());
    QCOMPARE(f.events, kDownloading + kDone);
  }

  void destroyedEngineReportsNothing() {
    Fixture f;
    QCoro::Task<> starting = f.beginStart();
    f.engine.reset();
    f.offer->outcome.complete(true);
    QVERIFY_THROWS_EXCEPTION(Cancelled, test::await(std::move(starting)));
    QCOMPARE(f.events, kDownloading);
  }
};

QTEST_GUILESS_MAIN(EngineDownloadsTest)
#include "engine_downloads_test.moc"
