// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/recording_queue.h"

#include "captions/sessions_folder.h"
#include "platform/foundation/file_access.h"
#include "support/manual_clock.h"
#include "support/saved_sessions.h"
#include "support/scripted_source.h"
#include "support/scripted_translation_platform.h"
#include "support/settle.h"
#include "support/suite.h"

#include <QDir>

using namespace velun;

namespace {

using State = RecordingQueue::State;
using namespace std::chrono_literals;

struct QueueFixture : test::SessionsFolder {
  QueueFixture() {
    QObject::connect(&queue, &RecordingQueue::sessionSaved, &queue,
                     [this](const QUrl& file) { saved.append(file); });
  }

  /// The source that was made last.
  test::ScriptedSource& source() { return *sources.back(); }

  void end(const std::optional<QString>& error = {}) {
    Q_EMIT source().ended(error);
    test::settle();
  }

  const RecordingQueue::Item& item(std::size_t index = 0) { return queue.items().at(index); }

  test::ManualClock clock;
  AppSettings settings;
  test::ScriptedTranslationPlatform translation;
  std::vector<QPointer<test::ScriptedSource>> sources;
  QStringList made;
  QList<QUrl> saved;
  RecordingQueue queue{settings, store,
                       [this](const QString& path, const QString& localeID, Instant) {
                         made.append(path + " " + localeID);
                         auto source = std::make_unique<test::ScriptedSource>();
                         sources.emplace_back(source.get());
                         return source;
                       },
                       translation, clock};
};

}  // namespace

class RecordingQueueTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void aRecordingBecomesASession() {
    QueueFixture f;
    f.queue.add({"/music/a talk.mp3"});
    QCOMPARE(f.made, QStringList({"/music/a talk.mp3 en_US"}));
    QVERIFY(f.source().isStarted);
    QCOMPARE(f.queue.unfinishedCount(), std::size_t(1));
    const Instant start = f.clock.now();
    FinalEvent event{"One here. Two here.", "en_US"};
    event.spoken = FinalEvent::Spoken{start + 10s, start + 14s};
    Q_EMIT f.source().eventOccurred(event);
    Q_EMIT f.source().advanced(60, 60);
    f.end();
    QCOMPARE(f.item().state, State::done);
    QCOMPARE(f.saved, QList<QUrl>({f.item().session}));
    const CaptionSession session = test::readSession(f.item().session);
    QCOMPARE(session.title, "a talk");
    QCOMPARE(session.lines.size(), std::size_t(2));
    QCOMPARE(session.lines[1].text, "Two here.");
    QCOMPARE(*session.lines[1].start, 12s);
    QCOMPARE(*session.lines[1].time - session.startedAt, Instant::duration(14s));
    QCOMPARE(*session.endedAt - session.startedAt, Instant::duration(60s));
    QCOMPARE(f.queue.unfinishedCount(), std::size_t(0));
  }

  void recordingsFollowEachOther() {
    QueueFixture f;
    f.queue.add({"/1.mp3", "/2.mp3"});
    QCOMPARE(f.sources.size(), std::size_t(1));
    QCOMPARE(f.item(1).state, State::waiting);
    f.source().say("One.");
    f.end();
    QCOMPARE(f.item(1).state, State::running);
    QVERIFY(!f.sources[0]);
    f.source().say("Two.");
    f.end();
    QCOMPARE(f.saved.size(), 2);
  }

  void progressIsToldWithTheTimeLeft() {
    QueueFixture f;
    f.queue.add({"/1.mp3"});
    f.clock.advance(60s);
    Q_EMIT f.source().advanced(750, 2700);
    QCOMPARE(f.item().progress, "12:30 of 45:00, 3 min left");
    QVERIFY(qFuzzyCompare(*f.item().fraction, 750.0 / 2700));
    Q_EMIT f.source().advanced(760, std::nullopt);
    QCOMPARE(f.item().progress, "12:40");
  }

  void translationsAreAwaited() {
    QueueFixture f;
    f.settings.setTranslate(true);
    f.settings.setTargetID("es");
    f.queue.add({"/1.mp3"});
    f.source().say("One.");
    QTRY_COMPARE(f.translation.scripts.size(), std::size_t(1));
    auto& script = *f.translation.scripts[0];
    QTRY_COMPARE(script.requests.size(), std::size_t(1));
    f.end();
    QCOMPARE(f.item().state, State::running);
    script.requests[0].succeed("Uno.");
    QTRY_COMPARE(f.item().state, State::done);
    QCOMPARE(test::readSession(f.item().session).lines[0].translations.at("es"), "Uno.");
  }

  void aMissingTranslationIsToldAndCanBeTriedAgain() {
    QueueFixture f;
    f.settings.setTranslate(true);
    f.settings.setTargetID("es");
    f.translation.bytes["es"] = 1000;
    f.queue.add({"/1.mp3"});
    QVERIFY(f.item().remark.contains("isn’t installed"));
    QVERIFY(!f.item().canBeRetried());
    f.source().say("One.");
    f.end();
    QCOMPARE(f.item().state, State::done);
    QVERIFY(f.item().remark.contains("isn’t installed"));
    QVERIFY(f.item().canBeRetried());
    f.translation.bytes.clear();
    f.queue.retry(f.item().id);
    QCOMPARE(f.item().remark, QString());
    QCOMPARE(f.item().state, State::running);
  }

  void aRecordingInTheLanguageOfTheTranslationNeedsNone() {
    QueueFixture f;
    f.settings.setTranslate(true);
    f.settings.setTargetID("en");
    f.queue.add({"/1.mp3"});
    QCOMPARE(f.item().remark, QString());
    QVERIFY(f.translation.scripts.empty());
  }

  void aFailedTranslationIsToldAndTheRestIsTranslated() {
    QueueFixture f;
    f.settings.setTranslate(true);
    f.settings.setTargetID("es");
    f.queue.add({"/1.mp3"});
    f.source().say("One.");
    f.source().say("Two.");
    QTRY_COMPARE(f.translation.scripts.size(), std::size_t(1));
    auto& script = *f.translation.scripts[0];
    QTRY_COMPARE(script.requests.size(), std::size_t(1));
    f.end();
    script.requests[0].fail("It broke.");
    QTRY_COMPARE(script.requests.size(), std::size_t(2));
    script.requests[1].succeed("Dos.");
    QTRY_COMPARE(f.item().state, State::done);
    QCOMPARE(f.item().remark, "Translation error: It broke.");
    const CaptionSession session = test::readSession(f.item().session);
    QVERIFY(session.lines[0].translations.empty());
    QCOMPARE(session.lines[1].translations.at("es"), "Dos.");
  }

  void aCancelKeepsNothingAndTheNextGoesOn() {
    QueueFixture f;
    f.queue.add({"/1.mp3", "/2.mp3"});
    f.source().say("One.");
    f.queue.remove(f.item().id);
    test::settle();
    QVERIFY(!f.sources[0]);
    QCOMPARE(f.queue.items().size(), std::size_t(1));
    QCOMPARE(f.item().state, State::running);
    QCOMPARE(f.saved.size(), 0);
  }

  void onlyCaptionsThatAreInNoFileAreUnsaved() {
    QueueFixture f;
    f.queue.add({"/1.mp3", "/2.mp3"});
    const int first = f.item(0).id;
    QVERIFY(!f.queue.hasUnsavedCaptions(first));
    f.source().say("One.");
    QVERIFY(f.queue.hasUnsavedCaptions(first));
    QVERIFY(!f.queue.hasUnsavedCaptions(f.item(1).id));
    f.end();
    QVERIFY(!f.queue.hasUnsavedCaptions(first));
  }

  void aCancelAtTheVeryEndIsACancel() {
    QueueFixture f;
    f.queue.add({"/1.mp3"});
    f.source().say("One.");
    Q_EMIT f.source().ended({});
    f.queue.remove(f.item().id);
    test::settle();
    QCOMPARE(f.saved.size(), 0);
  }

  void aFailureIsKeptAndCanBeTriedAgain() {
    QueueFixture f;
    f.queue.add({"/1.mp3", "/2.mp3"});
    f.end("“1.mp3” doesn’t exist.");
    QCOMPARE(f.item().state, State::failed);
    QCOMPARE(f.item().error, "“1.mp3” doesn’t exist.");
    QCOMPARE(f.item(1).state, State::running);
    f.queue.retry(f.item().id);
    QCOMPARE(f.item().state, State::waiting);
    f.end("broken");
    QCOMPARE(f.item().state, State::running);
    QCOMPARE(f.made.size(), 3);
  }

  void whatWasCaptionedBeforeAFailureIsKept() {
    QueueFixture f;
    f.queue.add({"/1.mp3"});
    f.source().say("One.");
    f.end("“1.mp3” is damaged.");
    QCOMPARE(f.item().state, State::done);
    QCOMPARE(f.item().error, "“1.mp3” is damaged.");
    QCOMPARE(f.saved.size(), 1);
    QCOMPARE(test::readSession(f.item().session).lines[0].text, "One.");
    f.queue.retry(f.item().id);
    QCOMPARE(f.item().state, State::running);
    f.source().say("One.");
    f.end();
    QCOMPARE(f.item().error, "");
    QCOMPARE(f.saved.size(), 2);
  }

  void aRecordingWithoutWordsMakesNoSession() {
    QueueFixture f;
    f.queue.add({"/1.mp3"});
    f.end();
    QCOMPARE(f.item().state, State::failed);
    QVERIFY(f.item().error.startsWith("No words were recognized."));
    QCOMPARE(f.saved.size(), 0);
  }

  void whatIsCaptionedSoFarCanBeSaved() {
    QueueFixture f;
    f.queue.add({"/1.mp3", "/2.mp3"});
    QCOMPARE(f.queue.unfinishedCount(), std::size_t(2));
    f.queue.saveProgress();
    QVERIFY(f.files().isEmpty());
    f.source().say("One.");
    Q_EMIT f.source().advanced(30, 60);
    f.queue.saveProgress();
    const auto saved = test::savedSessions(f.store);
    QCOMPARE(saved.size(), std::size_t(1));
    QCOMPARE(*saved[0].session.endedAt - saved[0].session.startedAt, Instant::duration(30s));
    QCOMPARE(f.queue.unfinishedCount(), std::size_t(2));
    f.source().say("Two.");
    f.end();
    QCOMPARE(test::readSession(saved[0].url).lines.size(), std::size_t(2));
    QCOMPARE(f.queue.unfinishedCount(), std::size_t(1));
  }

  void aSessionThatCannotBeWrittenIsKeptForAnotherTry() {
    QueueFixture f;
    const QString folder = f.store.directory.toLocalFile();
    QDir(folder).removeRecursively();
    QFile obstacle(folder);
    QVERIFY(QDir().mkpath(QFileInfo(folder).path()) && obstacle.open(QIODevice::WriteOnly));
    f.queue.add({"/1.mp3"});
    f.source().say("One.");
    f.end();
    QCOMPARE(f.item().state, State::failed);
    QVERIFY(f.item().error.startsWith("The captions couldn’t be saved: "));
    QCOMPARE(f.queue.unsavedCount(), std::size_t(1));
    f.queue.saveProgress();
    QVERIFY(obstacle.remove());
    f.queue.retry(f.item().id);
    QCOMPARE(f.item().state, State::done);
    QCOMPARE(f.made.size(), 1);
    QCOMPARE(f.queue.unsavedCount(), std::size_t(0));
    QCOMPARE(test::readSession(f.item().session).lines[0].text, "One.");
  }
};

QTEST_GUILESS_MAIN(RecordingQueueTest)
#include "recording_queue_test.moc"
