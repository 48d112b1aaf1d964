// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/engine_fixture.h"
#include "language/localization.h"
#include "support/suite.h"

#include <QSignalSpy>

using namespace velun;
using namespace std::chrono_literals;

using Fixture = test::EngineFixture;

/// What the engine says of itself while captions run.
class EngineStatusTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void lagIsShownUntilItIsOver() {
    Fixture f;
    f.startWithAudio();
    Q_EMIT f.speech.script->run->lagChanged(true);
    Q_EMIT f.speech.script->run->lagChanged(false);
    QCOMPARE(f.events, QStringList({"status Recognition is falling behind", "status -"}));
    f.stop();
  }

  void aMissingDeviceIsSaidUntilItIsBack() {
    Fixture f;
    QCOMPARE(f.start("en_US", {AudioTarget::Kind::input, "usb-mic", "Desk Microphone"}), QString());
    f.events.clear();
    const QSignalSpy changes(f.engine.get(), &SpeechRecognizing::missingInputChanged);
    Q_EMIT f.audio.source->deviceMissing();
    QVERIFY(f.engine->missingInput());
    Q_EMIT f.audio.source->deviceFound();
    QVERIFY(!f.engine->missingInput());
    Q_EMIT f.audio.source->deviceMissing();
    const QString missing =
        "status “Desk Microphone” is not connected. Captions will go on when it is back.";
    QCOMPARE(f.events, (QStringList{missing, "status -", missing}));
    f.stop();
    QVERIFY(!f.engine->missingInput());
    QCOMPARE(f.events.last(), QString("status -"));
    QCOMPARE(changes.count(), 4);
    QCOMPARE(f.audio.script->calls.first(), QString("start input usb-mic"));
  }

  void skippedAudioIsSaid() {
    Fixture f;
    f.startWithAudio();
    Q_EMIT f.speech.script->run->lagChanged(true);
    Q_EMIT f.speech.script->run->skipped(3.6);
    f.clock.advance(5s);
    Q_EMIT f.speech.script->run->skipped(8.2);
    const QSignalSpy tooSlow(f.engine.get(), &SpeechRecognizing::tooSlow);
    Q_EMIT f.speech.script->run->tooSlow("Choose a smaller model.");
    QCOMPARE(tooSlow.count(), 1);
    f.clock.advance(19s);
    const QStringList shown{"status Recognition is falling behind",
                            "status Skipped 4 s to catch up", "status Skipped 12 s to catch up",
                            "status Skipped 12 s to catch up. Choose a smaller model."};
    QCOMPARE(f.events, shown);
    f.clock.advance(1s);
    QCOMPARE(f.events.mid(4), QStringList{"status Recognition is falling behind"});
    Q_EMIT f.speech.script->run->lagChanged(false);
    Q_EMIT f.speech.script->run->skipped(2);
    f.clock.advance(10s);
    QCOMPARE(f.events.mid(5),
             QStringList({"status -", "status Skipped 2 s to catch up", "status -"}));
    Q_EMIT f.speech.script->run->skipped(2);
    f.stop();
    QCOMPARE(f.events.last(), QString("status -"));
    QCOMPARE(f.clock.scheduledCount(), std::size_t(0));
  }

  void skippedAudioIsSaidInKorean() {
    Localization::shared().setLanguage(AppLanguage::korean);
    Fixture f;
    f.startWithAudio();
    Q_EMIT f.speech.script->run->skipped(12);
    QCOMPARE(f.events.last(), QString("status 따라잡기 위해 12초를 건너뛰었습니다"));
    f.stop();
  }

  void briefNoticeIsFollowedByTheLastingOne() {
    Fixture f;
    f.startWithAudio();
    Q_EMIT f.speech.script->run->noticed("No punctuation");
    Q_EMIT f.speech.script->run->noticedBriefly("Changed");
    f.clock.advance(8s);
    Q_EMIT f.speech.script->run->noticed(QString());
    QCOMPARE(f.events, QStringList({"status No punctuation", "status Changed",
                                    "status No punctuation", "status -"}));
    f.stop();
  }

  void noticeIsShownUntilTheStop() {
    Fixture f;
    f.startWithAudio();
    Q_EMIT f.speech.script->run->noticed("No punctuation");
    Q_EMIT f.speech.script->run->lagChanged(true);
    Q_EMIT f.speech.script->run->lagChanged(false);
    QCOMPARE(f.events, QStringList({"status No punctuation", "status Recognition is falling behind",
                                    "status No punctuation"}));
    f.stop();
    QCOMPARE(f.events.value(3), QString("status -"));
  }

  void interruptionIsShownUntilItIsOver() {
    Fixture f;
    f.startWithAudio();
    Q_EMIT f.speech.script->run->lagChanged(true);
    Q_EMIT f.audio.source->interrupted();
    Q_EMIT f.audio.source->resumed();
    Q_EMIT f.speech.script->run->lagChanged(false);
    QCOMPARE(f.events,
             QStringList({"status Recognition is falling behind",
                          "status The sound system is not responding. Captions will go on when it "
                          "is back.",
                          "status Recognition is falling behind", "status -"}));
    f.stop();
  }

  void lostSoundServerIsAFailure() {
    Fixture f;
    f.startWithAudio();
    Q_EMIT f.audio.source->interrupted();
    Q_EMIT f.audio.source->failed("PipeWire did not come back");
    QCOMPARE(f.events.last(), QString("failure PipeWire did not come back"));
    const qsizetype count = f.events.size();
    f.stop();
    QCOMPARE(f.events.size(), count);
  }

  void stopDuringAnInterruptionClearsItsStatus() {
    Fixture f;
    f.startWithAudio();
    Q_EMIT f.audio.source->interrupted();
    f.stop();
    QCOMPARE(f.events.last(), QString("status -"));
  }

  void errorDuringAnInterruptionStaysAfterTheStop() {
    Fixture f;
    f.startWithAudio();
    Q_EMIT f.audio.source->interrupted();
    f.speech.script->end(QString("out of memory"));
    f.stop();
    QCOMPARE(f.events.last(), QString("failure Recognition error: out of memory"));
  }
};

QTEST_GUILESS_MAIN(EngineStatusTest)
#include "engine_status_test.moc"
