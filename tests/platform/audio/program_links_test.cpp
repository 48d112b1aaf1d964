// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/program_links.h"

#include "support/suite.h"

using namespace velun;

namespace {

constexpr std::uint32_t stream = 10;
constexpr std::uint32_t leftEar = 11;
constexpr std::uint32_t rightEar = 12;

const AudioTarget onlyFilm{AudioTarget::Kind::program, "Film", "Film"};
const AudioTarget allButFilm{AudioTarget::Kind::otherPrograms, "Film", "Film"};

AudioGraph graphWithEars() {
  AudioGraph graph;
  graph.addPort(leftEar, {stream, false, "FL"});
  graph.addPort(rightEar, {stream, false, "FR"});
  graph.addPort(13, {stream, true, "FL"});  // its monitor
  return graph;
}

void addPlayer(AudioGraph& graph, std::uint32_t node, const std::string& program,
               const std::vector<std::string>& channels) {
  graph.addDevice({node, "player", "Stream/Output/Audio", {}, program});
  std::uint32_t port = node;
  for (const std::string& channel : channels) graph.addPort(++port, {node, true, channel});
}

}  // namespace

class ProgramLinksTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void stereoStaysStereo() {
    AudioGraph graph = graphWithEars();
    addPlayer(graph, 20, "Film", {"FL", "FR"});
    QVERIFY((linksToPrograms(onlyFilm, stream, graph) ==
             std::set<PortPair>{{21, leftEar}, {22, rightEar}}));
  }

  void theMiddleIsHeardOnBothSidesAndBassOnNone() {
    AudioGraph graph = graphWithEars();
    addPlayer(graph, 20, "Film", {"FL", "FR", "FC", "LFE", "SL", "RR"});
    QVERIFY((linksToPrograms(onlyFilm, stream, graph) == std::set<PortPair>{{21, leftEar},
                                                                            {22, rightEar},
                                                                            {23, leftEar},
                                                                            {23, rightEar},
                                                                            {25, leftEar},
                                                                            {26, rightEar}}));
    addPlayer(graph, 40, "Call", {"MONO"});
    QVERIFY((linksToPrograms(allButFilm, stream, graph) ==
             std::set<PortPair>{{41, leftEar}, {41, rightEar}}));
    addPlayer(graph, 50, "Mixer", {"AUX7"});
    QCOMPARE(linksToPrograms(allButFilm, stream, graph).size(), std::size_t(4));
  }

  void everyStreamOfAProgramIsHeard() {
    AudioGraph graph = graphWithEars();
    addPlayer(graph, 20, "Film", {"FL"});
    addPlayer(graph, 30, "Film", {"FR"});
    addPlayer(graph, 40, "Music", {"FL", "FR"});
    QVERIFY((linksToPrograms(onlyFilm, stream, graph) ==
             std::set<PortPair>{{21, leftEar}, {31, rightEar}}));
    QVERIFY((linksToPrograms(allButFilm, stream, graph) ==
             std::set<PortPair>{{41, leftEar}, {42, rightEar}}));
    graph.remove(20);
    QCOMPARE(linksToPrograms(onlyFilm, stream, graph).size(), std::size_t(1));
  }

  void onlyWhatProgramsPlayIsHeard() {
    AudioGraph graph = graphWithEars();
    graph.addDevice({20, "speakers", "Audio/Sink", {}});
    graph.addPort(21, {20, true, "FL"});                           // its monitor
    graph.addDevice({30, "loopback", "Stream/Output/Audio", {}});  // no program's
    graph.addPort(31, {30, true, "FL"});
    graph.addDevice({40, "recorder", "Stream/Input/Audio", {}, "Recorder"});
    graph.addPort(41, {40, true, "FL"});
    QVERIFY(linksToPrograms(allButFilm, stream, graph).empty());
  }

  void nothingIsLinkedBeforeTheStreamHasPorts() {
    AudioGraph graph;
    addPlayer(graph, 20, "Film", {"FL", "FR"});
    QVERIFY(linksToPrograms(onlyFilm, stream, graph).empty());
  }
};

QTEST_GUILESS_MAIN(ProgramLinksTest)
#include "program_links_test.moc"
