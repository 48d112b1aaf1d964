// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/audio_graph.h"

#include "support/suite.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace velun;

namespace {

/// A choice as the session manager writes it.
QByteArray chosen(const char* name) {
  return QJsonDocument(QJsonObject{{"name", QString::fromUtf8(name)}}).toJson();
}

}  // namespace

class AudioGraphTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void kindsOfDevices_data() {
    QTest::addColumn<QString>("mediaClass");
    QTest::addColumn<bool>("isSink");
    QTest::addColumn<bool>("isSource");
    QTest::newRow("output") << "Audio/Sink" << true << false;
    QTest::newRow("microphone") << "Audio/Source" << false << true;
    QTest::newRow("virtual microphone") << "Audio/Source/Virtual" << false << true;
    QTest::newRow("headset") << "Audio/Duplex" << true << true;
    QTest::newRow("internal") << "Audio/Sink/Internal" << false << false;
    QTest::newRow("player") << "Stream/Output/Audio" << false << false;
    QTest::newRow("camera") << "Video/Source" << false << false;
    QTest::newRow("none") << "" << false << false;
  }
  void kindsOfDevices() {
    QFETCH(QString, mediaClass);
    const AudioDevice device{1, "name", mediaClass.toStdString(), {}};
    QTEST(device.isSink(), "isSink");
    QTEST(device.isSource(), "isSource");
  }

  void channelsWithoutPositionsAreCounted() {
    AudioGraph graph = graphWithDevices();
    graph.addPort(31, {20, true, "AUX0"});
    graph.addPort(32, {20, true, "AUX1"});
    graph.addPort(33, {20, true, "FL"});
    graph.addPort(34, {10, true, "AUX0"});
    QCOMPARE(graph.auxChannelCount(20), 2U);
    QCOMPARE(graph.auxChannelCount(11), 0U);
    graph.remove(32);
    QCOMPARE(graph.auxChannelCount(20), 1U);
  }

  void theDefaultsAreWhatTheSessionManagerChose() {
    AudioGraph graph = graphWithDevices();
    graph.setDefault("default.audio.sink", chosen("speakers"));
    graph.setDefault("default.audio.source", chosen("mic"));
    graph.setDefault("default.configured.audio.sink", chosen("headphones"));
    QCOMPARE(graph.defaultSink()->id, 10U);
    QCOMPARE(graph.defaultSource()->id, 20U);
  }

  void aSinkOfferedAsAMicrophoneIsNone() {
    AudioGraph graph = graphWithDevices();
    graph.setDefault("default.audio.source", chosen("speakers"));
    QVERIFY(!graph.defaultSource());
  }

  void aChoiceThatIsNoDeviceIsNone_data() {
    QTest::addColumn<QByteArray>("value");
    QTest::newRow("unknown name") << chosen("gone");
    QTest::newRow("empty name") << chosen("");
    QTest::newRow("no name") << QByteArray("{}");
    QTest::newRow("no object") << QByteArray("\"speakers\"");
    QTest::newRow("no JSON") << QByteArray("speakers");
    QTest::newRow("taken back") << QByteArray();
  }
  void aChoiceThatIsNoDeviceIsNone() {
    QFETCH(QByteArray, value);
    AudioGraph graph = graphWithDevices();
    graph.setDefault("default.audio.sink", chosen("speakers"));
    graph.setDefault("default.audio.sink", value.isNull() ? nullptr : value.constData());
    QVERIFY(!graph.defaultSink());
  }

  void aNameMayHoldAnything() {
    AudioGraph graph;
    graph.addDevice({5, "Lautsprecher \"ü\" \\ 1", "Audio/Sink", {}});
    graph.setDefault("default.audio.sink", chosen("Lautsprecher \"ü\" \\ 1"));
    QCOMPARE(graph.defaultSink()->id, 5U);
  }

  void allChoicesCanBeTakenBackAtOnce() {
    AudioGraph graph = graphWithDevices();
    graph.setDefault("default.audio.sink", chosen("speakers"));
    graph.setDefault(nullptr, nullptr);
    QVERIFY(!graph.defaultSink());
  }

  void aDeviceMayComeAfterItWasChosen() {
    AudioGraph graph;
    graph.setDefault("default.audio.sink", chosen("late"));
    QVERIFY(!graph.defaultSink());
    graph.addDevice({7, "late", "Audio/Sink", {}});
    QCOMPARE(graph.defaultSink()->id, 7U);
    graph.remove(7);
    QVERIFY(!graph.defaultSink());
    QVERIFY(!graph.devices().contains(7));
  }

  void aNewSessionManagerStartsAfresh() {
    AudioGraph graph = graphWithDevices();
    graph.setDefault("default.audio.sink", chosen("speakers"));
    QCOMPARE(graph.sessionNumber(), 1);
    graph.endSession();
    QVERIFY(!graph.hasSession());
    QVERIFY(!graph.defaultSink());
    graph.beginSession();
    QVERIFY(graph.hasSession());
    QVERIFY(!graph.defaultSink());
    QCOMPARE(graph.sessionNumber(), 2);
  }

  void nodesAreLinkedWhileALinkLeadsFromOneToTheOther() {
    AudioGraph graph = graphWithDevices();
    graph.addLink(100, 10, 50);
    graph.addLink(101, 10, 50);
    QVERIFY(graph.isLinked(10, 50));
    QVERIFY(!graph.isLinked(11, 50));
    QVERIFY(!graph.isLinked(10, 51));
    QVERIFY(!graph.isLinked(50, 10));
    graph.remove(100);
    QVERIFY(graph.isLinked(10, 50));
    graph.remove(101);
    QVERIFY(!graph.isLinked(10, 50));
  }

 private:
  static AudioGraph graphWithDevices() {
    AudioGraph graph;
    graph.beginSession();
    graph.addDevice({10, "speakers", "Audio/Sink", {}});
    graph.addDevice({11, "headphones", "Audio/Sink", {}});
    graph.addDevice({20, "mic", "Audio/Source", {}});
    return graph;
  }
};

QTEST_GUILESS_MAIN(AudioGraphTest)
#include "audio_graph_test.moc"
