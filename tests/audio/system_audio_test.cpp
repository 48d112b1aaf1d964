// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/system_audio.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "support/scripted_audio_hardware.h"
#include "support/suite.h"

#include <QUuid>

using namespace velun;
using test::AudioHardwareScript;
using test::ScriptedAudioHardware;

namespace {

const QStringList startCalls = {"createProcessTap",          "tapFormat(71)",
                                "defaultSystemOutputDevice", "deviceUID(42)",
                                "createAggregateDevice",     "audioDeviceCreateIOProcID(99)",
                                "audioDeviceStart(99, 5)"};

struct Ids {
  AudioObjectID tap;
  AudioObjectID aggregate;
  AudioDeviceIOProcID procedure;
};

/// A source on a scripted hardware, and the text of what its start threw.
struct Run {
  std::shared_ptr<AudioHardwareScript> script = std::make_shared<AudioHardwareScript>();
  SystemAudio source{std::make_unique<ScriptedAudioHardware>(script)};
  AudioSource::Handler handler = [](const PcmBuffer&) {
  };

  QString start() {
    try {
      source.start(handler);
    } catch (const Failure& failure) {
      return failure.errorDescription();
    }
    return {};
  }

  bool hasIds(Ids ids) const {
    return source.tapID() == ids.tap && source.aggID() == ids.aggregate &&
           source.procID() == ids.procedure;
  }
};

}  // namespace

class SystemAudioTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void theStepsComeInOrder() {
    Run run;
    QCOMPARE(run.start(), QString());
    QCOMPARE(run.script->calls, startCalls);
    QVERIFY(run.hasIds({71, 99, 5}));
  }

  void stoppingTakesTheStepsBack() {
    Run run;
    run.start();
    run.script->calls.clear();
    run.source.stop();
    QCOMPARE(run.script->calls,
             QStringList({"audioDeviceStop(99, 5)", "audioDeviceDestroyIOProcID(99, 5)",
                          "destroyAggregateDevice(99)", "destroyProcessTap(71)"}));
    QVERIFY(run.hasIds({0, 0, 0}));
  }

  void theTapIsPrivateAudibleAndFresh() {
    Run first;
    Run second;
    first.start();
    second.start();
    QVERIFY(first.script->tap.isPrivate);
    QVERIFY(!first.script->tap.isMuted);
    QVERIFY(!QUuid::fromString(first.script->tap.uuid).isNull());
    QVERIFY(first.script->tap.uuid != second.script->tap.uuid);
  }

  void theAggregateDeviceIsDescribedExactly() {
    Run first;
    Run second;
    first.start();
    second.start();
    const AggregateDeviceDescription& device = first.script->aggregate;
    QCOMPARE(device.name, QString("Velun Tap"));
    QVERIFY(!QUuid::fromString(device.uid).isNull());
    QVERIFY(device.uid != second.script->aggregate.uid);
    QVERIFY(device.uid != first.script->tap.uuid);
    QCOMPARE(device.mainDeviceUID, QString("output"));
    QVERIFY(device.isPrivate);
    QVERIFY(!device.isStacked);
    QVERIFY(device.tapAutoStarts);
    QCOMPARE(device.subdeviceUIDs, std::vector<QString>{"output"});
    QVERIFY(device.taps ==
            (std::vector<AggregateDeviceDescription::Tap>{{first.script->tap.uuid, true}}));
  }

  void theFirstBadStatusEndsTheStart_data() {
    QTest::addColumn<QString>("step");
    QTest::addColumn<int>("status");
    QTest::addColumn<QString>("english");
    QTest::addColumn<QString>("korean");
    QTest::addColumn<int>("callCount");
    QTest::newRow("tap") << "createProcessTap" << -50 << "Audio tap creation failed (-50)"
                         << "오디오 탭 생성 실패 (-50)" << 1;
    QTest::newRow("format") << "tapFormat" << -5 << "Tap format lookup failed (-5)"
                            << "탭 포맷 조회 실패 (-5)" << 2;
    QTest::newRow("device") << "defaultSystemOutputDevice" << -19
                            << "Output device lookup failed (-19)"
                            << "출력 장치 조회 실패 (-19)" << 3;
    QTest::newRow("uid") << "deviceUID" << -10851 << "Output device UID lookup failed (-10851)"
                         << "출력 장치 UID 조회 실패 (-10851)" << 4;
    QTest::newRow("aggregate") << "createAggregateDevice" << 560947818
                               << "Aggregate device creation failed (560947818)"
                               << "집합 장치 생성 실패 (560947818)" << 5;
    QTest::newRow("procedure") << "audioDeviceCreateIOProcID" << -1 << "IOProc creation failed (-1)"
                               << "IOProc 생성 실패 (-1)" << 6;
    QTest::newRow("start") << "audioDeviceStart" << 1 << "Audio start failed (1)"
                           << "오디오 시작 실패 (1)" << 7;
  }
  void theFirstBadStatusEndsTheStart() {
    QFETCH(QString, step);
    QFETCH(int, status);
    QFETCH(int, callCount);
    for (const AppLanguage language : {AppLanguage::english, AppLanguage::korean}) {
      Localization::shared().setLanguage(language);
      Run run;
      run.script->statuses[step] = status;
      QTEST(run.start(), language == AppLanguage::english ? "english" : "korean");
      QCOMPARE(run.script->calls, startCalls.first(callCount));
    }
  }

  void idsStayUntilStopAfterAPartialStart_data() {
    QTest::addColumn<QString>("step");
    QTest::addColumn<QList<unsigned>>("ids");
    QTest::addColumn<QStringList>("teardown");
    const QStringList tapOnly = {"destroyProcessTap(71)"};
    const QStringList deviceToo = {"destroyAggregateDevice(99)", "destroyProcessTap(71)"};
    QTest::newRow("tap") << "createProcessTap" << QList<unsigned>{0, 0, 0} << QStringList();
    QTest::newRow("format") << "tapFormat" << QList<unsigned>{71, 0, 0} << tapOnly;
    QTest::newRow("device") << "defaultSystemOutputDevice" << QList<unsigned>{71, 0, 0} << tapOnly;
    QTest::newRow("uid") << "deviceUID" << QList<unsigned>{71, 0, 0} << tapOnly;
    QTest::newRow("aggregate") << "createAggregateDevice" << QList<unsigned>{71, 0, 0} << tapOnly;
    QTest::newRow("procedure") << "audioDeviceCreateIOProcID" << QList<unsigned>{71, 99, 0}
                               << deviceToo;
    QTest::newRow("start") << "audioDeviceStart" << QList<unsigned>{71, 99, 5}
                           << QStringList(
                                  {"audioDeviceStop(99, 5)", "audioDeviceDestroyIOProcID(99, 5)"}) +
                                  deviceToo;
  }
  void idsStayUntilStopAfterAPartialStart() {
    QFETCH(QString, step);
    QFETCH(QList<unsigned>, ids);
    QFETCH(QStringList, teardown);
    Run run;
    run.script->statuses[step] = -1;
    QVERIFY(!run.start().isEmpty());
    QVERIFY(run.hasIds({ids[0], ids[1], ids[2]}));
    run.script->calls.clear();
    run.source.stop();
    QCOMPARE(run.script->calls, teardown);
    QVERIFY(run.hasIds({0, 0, 0}));
  }

  void aFormatThatCannotBeReadHasNoStatus_data() {
    QTest::addColumn<double>("rate");
    QTest::addColumn<int>("channelCount");
    QTest::newRow("no rate") << 0.0 << 2;
    QTest::newRow("no channels") << 48'000.0 << 0;
  }
  void aFormatThatCannotBeReadHasNoStatus() {
    QFETCH(double, rate);
    QFETCH(int, channelCount);
    Run english;
    Run korean;
    english.script->format =
        korean.script->format = {AudioFormat::Sample::float32, rate, channelCount, true};
    QCOMPARE(english.start(), QString("Couldn’t read the tap format"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(korean.start(), QString("탭 포맷 해석 실패"));
  }

  void aDeviceWithoutUIDHasNoStatus() {
    Run english;
    Run korean;
    english.script->uid = korean.script->uid = std::nullopt;
    QCOMPARE(english.start(), QString("No output device UID"));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(korean.start(), QString("출력 장치 UID 없음"));
  }

  void stoppingWithoutAStartDoesNothing() {
    Run run;
    run.source.stop();
    QVERIFY(run.script->calls.isEmpty());
    QVERIFY(run.hasIds({0, 0, 0}));
  }

  void stoppingTwiceTakesBackOnce() {
    Run run;
    run.start();
    run.source.stop();
    run.script->calls.clear();
    run.source.stop();
    QVERIFY(run.script->calls.isEmpty());
  }

  void statusesOfTheTeardownAreIgnored() {
    Run run;
    run.start();
    for (const char* step : {"audioDeviceStop", "audioDeviceDestroyIOProcID",
                             "destroyAggregateDevice", "destroyProcessTap"}) {
      run.script->statuses[step] = -50;
    }
    run.script->calls.clear();
    run.source.stop();
    QCOMPARE(run.script->calls.size(), 4);
    QVERIFY(run.hasIds({0, 0, 0}));
  }

  void destroyingASourceDoesNotStopIt() {
    const auto script = std::make_shared<AudioHardwareScript>();
    {
      SystemAudio source(std::make_unique<ScriptedAudioHardware>(script));
      source.start([](const PcmBuffer&) {});
    }
    QCOMPARE(script->calls, startCalls);
  }

  void buffersReachTheHandlerInTheirOwnFormat() {
    Run run;
    QList<double> rates;
    run.handler = [&rates](const PcmBuffer& buffer) {
      rates << buffer.format().sampleRate;
    };
    run.start();
    run.script->block(PcmBuffer({AudioFormat::Sample::float32, 48'000, 2, true}, 16));
    run.script->block(PcmBuffer({AudioFormat::Sample::int16, 44'100, 6, true}, 16));
    QCOMPARE(rates, QList<double>({48'000, 44'100}));
  }

  void aBufferThatIsNoAudioIsDropped() {
    Run run;
    int count = 0;
    run.handler = [&count](const PcmBuffer&) {
      ++count;
    };
    run.start();
    run.script->block(PcmBuffer({AudioFormat::Sample::float32, 0, 2, true}, 16));
    run.script->block(PcmBuffer({AudioFormat::Sample::float32, 48'000, 0, true}, 16));
    QCOMPARE(count, 0);
  }
};

QTEST_GUILESS_MAIN(SystemAudioTest)
#include "system_audio_test.moc"
