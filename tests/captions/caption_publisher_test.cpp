// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/caption_publisher.h"

#include "captions/model_fixture.h"
#include "settings/sharing_settings.h"
#include "support/suite.h"

using namespace velun;

namespace {

/// Writes down what it is given.
class RecordedFeed final : public CaptionFeed {
 public:
  void open(State state) override { record("open", state); }
  void close() override { heard.append("close"); }
  void setState(State state) override { record("state", state); }
  void setDraft(const QString& text) override { heard.append("draft " + text); }
  void addLine(const FeedLine& line) override {
    heard.append("line " + line.text + " " + line.language);
    ids.append(line.id);
    speakers.append(line.speaker);
  }
  void addTranslation(const QString& id, const QString& language, const QString& text) override {
    heard.append(QStringLiteral("translation %1 %2 %3").arg(ids.indexOf(id)).arg(language, text));
  }
  void clear() override { heard.append("clear"); }

  QStringList take() { return std::exchange(heard, {}); }

  QStringList heard;
  QStringList ids;
  QStringList speakers;

 private:
  void record(const char* what, State state) {
    static const QStringList names = {"stopped", "starting", "running", "stopping"};
    heard.append(QString(what) + " " + names[static_cast<int>(state)]);
  }
};

}  // namespace

class CaptionPublisherTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void nothingIsPublishedUntilTheUserOffersIt() {
    test::ModelFixture f;
    SharingSettings sharing;
    RecordedFeed feed;
    const CaptionPublisher publisher(*f.model, sharing, feed);
    f.start();
    f.draft("hello");
    f.final("Hello.");
    f.stop();
    QCOMPARE(feed.take(), QStringList());
  }

  void aRunIsPublishedFromStartToStop() {
    test::ModelFixture f;
    SharingSettings sharing;
    RecordedFeed feed;
    const CaptionPublisher publisher(*f.model, sharing, feed);
    sharing.setOffersCaptions(true);
    QCOMPARE(feed.take(), QStringList({"open stopped"}));
    f.start();
    QCOMPARE(feed.take().last(), "state running");
    f.draft("hello");
    f.final("Hello. Good morning.");
    QCOMPARE(feed.take(), QStringList({"draft hello", "draft ", "line Hello. en_US",
                                       "line Good morning. en_US"}));
    f.stop();
    QCOMPARE(feed.take().last(), "state stopped");
    sharing.setOffersCaptions(false);
    QCOMPARE(feed.take(), QStringList({"close"}));
  }

  void aLineTellsItsSpeakerIfItIsKnown() {
    test::ModelFixture f;
    SharingSettings sharing;
    RecordedFeed feed;
    const CaptionPublisher publisher(*f.model, sharing, feed);
    sharing.setOffersCaptions(true);
    f.start();
    FinalEvent event{"Hello.", "en_US"};
    f.recognizer->emitEvent(event);
    event.voice = VoicePrint{.values = {1}, .seconds = 4};
    f.recognizer->emitEvent(event);
    QCOMPARE(feed.speakers, QStringList({"", "Speaker 1"}));
  }

  void earlierLinesAreNotPublished() {
    test::ModelFixture f([](AppSettings& settings) { settings.setTranslate(true); });
    SharingSettings sharing;
    RecordedFeed feed;
    const CaptionPublisher publisher(*f.model, sharing, feed);
    f.start();
    f.final("Before.");
    sharing.setOffersCaptions(true);
    f.translateToUpperCase();
    f.settings.setTargetID("es");
    test::settle();
    f.final("After.");
    test::settle();
    QCOMPARE(feed.take(),
             QStringList({"open running", "line After. en_US", "translation 0 es AFTER."}));
  }

  void anotherSessionClearsTheFeed() {
    test::ModelFixture f;
    SharingSettings sharing;
    sharing.setOffersCaptions(true);
    RecordedFeed feed;
    const CaptionPublisher publisher(*f.model, sharing, feed);
    f.start();
    f.final("One.");
    f.stop();
    feed.take();
    f.model->newSession();
    QVERIFY(feed.take().contains("clear"));
    f.start();
    f.final("Two.");
    QVERIFY(feed.take().contains("line Two. en_US"));
  }

  void theEndOfThePublisherClosesTheFeed() {
    test::ModelFixture f;
    SharingSettings sharing;
    sharing.setOffersCaptions(true);
    RecordedFeed feed;
    { const CaptionPublisher publisher(*f.model, sharing, feed); }
    QCOMPARE(feed.take(), QStringList({"open stopped", "close"}));
  }
};

QTEST_GUILESS_MAIN(CaptionPublisherTest)
#include "caption_publisher_test.moc"
