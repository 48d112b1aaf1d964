// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/pipewire_suite.h"
#include "support/await.h"
#include "support/playback_stream.h"

using namespace velun;
using namespace velun::test;
using namespace std::chrono_literals;

/// Captures one program, or all but one, while programs come and go.
class PipeWireProgramTest final : public PipeWireSuite {
  Q_OBJECT

 private Q_SLOTS:
  void onlyOneProgramIsHeardOnWhicheverOutput() {
    const auto film = PlaybackStream::play("headphones", 1000, "Film");
    const auto music = PlaybackStream::play("speakers", 3000, "Music");
    start(AudioTarget::Kind::program, "Film");
    VERIFY_SOON(hearsInTime(1000, 3000));
    const std::size_t buffers = recorder_.bufferCount();
    VERIFY_SOON(recorder_.bufferCount() > buffers + 20);
    QVERIFY(recorder_.hearsOnly(1000, 3000));
  }

  void allButOneProgramAreHeard() {
    const auto music = PlaybackStream::play("speakers", 3000, "Music");
    const auto film = PlaybackStream::play("headphones", 1000, "Film");
    start(AudioTarget::Kind::otherPrograms, "Music");
    VERIFY_SOON(hearsInTime(1000, 3000));
    const auto call = PlaybackStream::play("speakers", 2000, "Call");
    VERIFY_SOON(hearsInTime(2000, 3000));
    VERIFY_SOON(hearsInTime(1000, 3000));
  }

  void aProgramThatRestartsIsHeardAgain() {
    start(AudioTarget::Kind::program, "Film");
    auto film = PlaybackStream::play("speakers", 1000, "Film");
    VERIFY_SOON(hearsInTime(1000, 3000));
    film.reset();
    // The silence in which the last words are finished.
    VERIFY_SOON(isSilentInTime());
    film = PlaybackStream::play("speakers", 3000, "Film");
    VERIFY_SOON(hearsInTime(3000, 1000));
    QVERIFY(reports_.isEmpty());
  }

  void anotherStreamOfTheProgramIsHeardToo() {
    start(AudioTarget::Kind::program, "Film");
    const auto first = PlaybackStream::play("speakers", 1000, "Film");
    VERIFY_SOON(hearsInTime(1000, 3000));
    const auto second = PlaybackStream::play("headphones", 3000, "Film");
    VERIFY_SOON(hearsInTime(3000, 2000));
    VERIFY_SOON(hearsInTime(1000, 2000));
  }

  void monoAndSurroundAreHeardAtTheirLevel() {
    start(AudioTarget::Kind::program, "Film");
    for (const int channels : {1, 6}) {
      recorder_.clear();
      const int centre = 2;
      const PlaybackStream film({.channelCount = channels}, "speakers",
                                PlaybackStream::tone(1000, 48'000, 0.5F),
                                channels == 1 ? PlaybackStream::everyChannel : centre, "Film");
      VERIFY_SOON(hearsInTime(1000, 3000));
    }
  }

  void theSoundOfTheUserIsNotChanged() {
    start(AudioTarget::Kind::program, "Film");
    Recorder speakers;
    const auto tap = platform_.makeSource({AudioTarget::Kind::output, "speakers", {}});
    await(tap->start(speakers.handler()));
    const auto film = PlaybackStream::play({}, 1000, "Film");
    const auto music = PlaybackStream::play({}, 3000, "Music");
    VERIFY_SOON(hearsInTime(1000, 3000));
    VERIFY_SOON(speakers.amplitudeAt(1000, 1600) > 0.45);
    VERIFY_SOON(speakers.amplitudeAt(3000, 1600) > 0.45);
  }

  void aQuietProgramLetsTheMachineSleep() {
    start(AudioTarget::Kind::program, "Film");
    VERIFY_SOON(recorder_.bufferCount() > 3);
    clock_.advance(1h);
    VERIFY_SOON(PrivatePipeWire::stateOf("Velun Tap") == "suspended" ||
                PrivatePipeWire::stateOf("Velun Tap") == "idle");
    auto film = PlaybackStream::play("speakers", 1000, "Film");
    VERIFY_SOON(hearsInTime(1000, 3000));
    film.reset();
    VERIFY_SOON(isSilentInTime());
  }

  void aServerThatRestartsIsReachedAgain() {
    start(AudioTarget::Kind::program, "Film");
    server_->killDaemon();
    VERIFY_SOON(reports_ == QStringList{"interrupted"});
    QVERIFY(server_->start());
    QVERIFY(server_->addSink("speakers"));
    QVERIFY(server_->setDefaultSink("speakers"));
    const auto film = PlaybackStream::play("speakers", 1000, "Film");
    VERIFY_SOON(hearsInTime(1000, 3000));
    QCOMPARE(reports_, QStringList({"interrupted", "resumed"}));
  }

  void aSessionManagerThatRestartsIsNotNoticed() {
    start(AudioTarget::Kind::program, "Film");
    auto film = PlaybackStream::play("speakers", 1000, "Film");
    VERIFY_SOON(hearsInTime(1000, 3000));
    film.reset();
    server_->killManager();
    QVERIFY(server_->startManager());
    QVERIFY(server_->remove("speakers"));
    QVERIFY(server_->remove("headphones"));
    QVERIFY(server_->addSink("speakers"));
    QVERIFY(server_->setDefaultSink("speakers"));
    film = PlaybackStream::play("speakers", 3000, "Film");
    VERIFY_SOON(hearsInTime(3000, 1000));
    QVERIFY(reports_.isEmpty());
  }

  void programsThatPlayAreListed() {
    const auto targets = platform_.followTargets();
    const auto programs = [&targets] {
      QStringList names;
      for (const AudioTarget& target : targets->list()) {
        if (target.kind == AudioTarget::Kind::program) names << target.name;
      }
      return names;
    };
    const auto film = PlaybackStream::play("speakers", 1000, "Film");
    auto music = PlaybackStream::play("speakers", 3000, "Music");
    auto more = PlaybackStream::play("speakers", 2000, "Music");
    VERIFY_SOON(programs() == QStringList({"Film", "Music"}));
    start(AudioTarget::Kind::program, "Film");
    music.reset();
    VERIFY_SOON(hearsInTime(1000, 3000));
    QCOMPARE(programs(), QStringList({"Film", "Music"}));
    more.reset();
    VERIFY_SOON(programs() == QStringList{"Film"});
  }

 private:
  void start(AudioTarget::Kind kind, const QString& program) {
    source_ = makeSource(platform_, {kind, program, program});
    await(source_->start(recorder_.handler()));
  }

  /// Other programs are heard at the same time, so that its level is not exact.
  bool hearsInTime(double frequency, double other) {
    clock_.advance(20ms);
    const double heard = recorder_.amplitudeAt(frequency, 1600);
    return heard > 0.3 && heard < 0.6 && recorder_.amplitudeAt(other, 1600) < 0.05;
  }

  bool isSilentInTime() {
    clock_.advance(20ms);
    return recorder_.level(1600) == 0;
  }
};

QTEST_GUILESS_MAIN(PipeWireProgramTest)
#include "pipewire_program_test.moc"
