// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/model_fixture.h"
#include "support/saved_sessions.h"
#include "support/suite.h"

#include <QSignalSpy>

using namespace velun;

namespace {

/// Two voices that have nothing in common.
VoicePrint voice(int which) {
  VoicePrint print{.values = {0, 0}, .seconds = 4};
  print.values[static_cast<std::size_t>(which)] = 1;
  return print;
}

struct Fixture : test::ModelFixture {
  using ModelFixture::ModelFixture;

  void say(const QString& text, const std::optional<VoicePrint>& who) {
    FinalEvent event{text, "en_US"};
    event.voice = who;
    recognizer->emitEvent(event);
  }

  QStringList speakers() const {
    QStringList all;
    for (const Line& line : model->lines()) all += line.speaker.value_or("-");
    return all;
  }
};

}  // namespace

class CaptionSpeakersTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void everySentenceOfAVoiceHasItsSpeaker() {
    Fixture f;
    f.start();
    f.say("One. Two.", voice(0));
    f.say("Three.", voice(1));
    f.say("Four.", std::nullopt);
    f.say("Five.", voice(0));
    QCOMPARE(f.speakers(), QStringList({"1", "1", "2", "-", "1"}));
  }

  void aSpeakerIsRenamedInLinesBeforeAndAfter() {
    Fixture f([](AppSettings& settings) { settings.setAutoSaveSessions(true); });
    f.start();
    f.say("One.", voice(0));
    f.say("Two.", voice(1));
    const QSignalSpy changes(f.model.get(), &CaptionViewModel::speakersChanged);
    f.model->renameSpeaker("1", "Anna");
    QCOMPARE(changes.count(), 1);
    f.say("Three.", voice(0));
    QCOMPARE(f.speakers(), QStringList({"Anna", "2", "Anna"}));
    f.model->renameSpeaker("9", "Nobody");
    QCOMPARE(changes.count(), 1);
    f.stop();
    f.settleSaving();
    QCOMPARE(*test::readSession(*f.model->savedURL()).lines[0].speaker, "Anna");
  }

  void captionsThatGoOnKnowTheirSpeakers() {
    Fixture f;
    f.start();
    f.say("One.", voice(0));
    f.say("Two.", voice(1));
    f.stop();
    f.start();
    f.say("Three.", voice(0));
    QCOMPARE(f.speakers(), QStringList({"1", "2", "1"}));
  }

  void anotherSessionBeginsWithTheFirstSpeaker() {
    Fixture f;
    f.start();
    f.say("One.", voice(0));
    f.say("Two.", voice(1));
    f.stop();
    f.model->newSession();
    f.start();
    f.say("Three.", voice(1));
    QCOMPARE(f.speakers(), QStringList({"1"}));
  }

  void theSwitchRestartsCaptions() {
    Fixture f;
    f.start();
    f.engine->calls.clear();
    f.settings.setLabelsSpeakers(true);
    test::settle();
    QCOMPARE(f.engine->calls, QStringList({"stop", "stopped", "start en_US computer", "started"}));
    QVERIFY(f.model->isRunning());
  }
};

QTEST_GUILESS_MAIN(CaptionSpeakersTest)
#include "caption_speakers_test.moc"
