// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/screen_cast_graph.h"

#include "support/suite.h"

using namespace velun;

class ScreenCastGraphTest final : public test::Suite {
  Q_OBJECT

 private:
  static constexpr std::uint32_t kOffer = 10, kConsumer = 20, kLink = 30, kClient = 40;

  static ScreenCastGraph linked(const ScreenCastGraph::Node& offer,
                                const std::string& application = "obs") {
    ScreenCastGraph graph;
    graph.addClient(kClient, application);
    graph.addNode(kOffer, offer);
    graph.addNode(
        kConsumer,
        {.mediaClass = "Stream/Input/Video", .mediaRole = {}, .name = {}, .client = kClient});
    graph.addLink(kLink, kOffer, kConsumer);
    return graph;
  }
  static ScreenCastGraph::Node node(const char* mediaClass, const char* role = "",
                                    const char* name = "", bool hasDevice = false) {
    return {.mediaClass = mediaClass, .mediaRole = role, .name = name, .hasDevice = hasDevice};
  }

 private Q_SLOTS:
  void recognizesOffersOfCompositorsAndPortals() {
    QVERIFY(linked(node("Stream/Output/Video", "", "mutter")).isCastRunning());
    QVERIFY(linked(node("Video/Source", "", "xdg-desktop-portal-wlr")).isCastRunning());
  }

  void offerWithoutConsumerIsNotACast() {
    ScreenCastGraph graph;
    graph.addNode(kOffer, node("Stream/Output/Video"));
    QVERIFY(!graph.isCastRunning());
    graph.addLink(kLink, kOffer, kConsumer);
    QVERIFY2(graph.isCastRunning(), "a consumer that cannot be seen counts");
    graph.remove(kLink);
    QVERIFY(!graph.isCastRunning());
  }

  void camerasAndSoundAreNotCasts() {
    QVERIFY(!linked(node("Video/Source", "Camera")).isCastRunning());
    QVERIFY(!linked(node("Video/Source", "", "v4l2_input.pci-0000")).isCastRunning());
    QVERIFY(!linked(node("Video/Source", "", "cam", true)).isCastRunning());
    QVERIFY(!linked(node("Stream/Output/Audio")).isCastRunning());
    QVERIFY(!linked(node("Audio/Source")).isCastRunning());
  }

  void shellPreviewsAreNotCasts() {
    QVERIFY(!linked(node("Stream/Output/Video"), "plasmashell").isCastRunning());
    ScreenCastGraph graph = linked(node("Stream/Output/Video"), "plasmashell");
    graph.addNode(21,
                  {.mediaClass = "Stream/Input/Video", .mediaRole = {}, .name = {}, .client = 41});
    graph.addLink(31, kOffer, 21);
    QVERIFY(graph.isCastRunning());
  }

  void castEndsWithItsOffer() {
    ScreenCastGraph graph = linked(node("Stream/Output/Video"));
    graph.remove(kOffer);
    QVERIFY(!graph.isCastRunning());
  }
};

QTEST_GUILESS_MAIN(ScreenCastGraphTest)
#include "screen_cast_graph_test.moc"
