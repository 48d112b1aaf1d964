// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/captions_command.h"

#include "support/manual_clock.h"
#include "support/scripted_source.h"
#include "support/scripted_translation_platform.h"
#include "support/suite.h"
#include "written_file.h"

#include <QSignalSpy>

using namespace velun;

class CaptionsCommandTest final : public test::Suite {
  Q_OBJECT

  test::ManualClock clock_;
  std::unique_ptr<test::ScriptedTranslationPlatform> translation_;
  std::unique_ptr<test::WrittenFile> out_;
  std::unique_ptr<test::WrittenFile> messages_;
  std::unique_ptr<LinePrinter> printer_;
  std::unique_ptr<CaptionsCommand> command_;
  test::ScriptedSource* source_ = nullptr;
  std::vector<int> finished_;

  void start(const CaptionArguments& arguments = {}, std::FILE* lines = nullptr) {
    translation_ = std::make_unique<test::ScriptedTranslationPlatform>();
    out_ = std::make_unique<test::WrittenFile>();
    messages_ = std::make_unique<test::WrittenFile>();
    if (!lines) lines = out_->file();
    printer_ = makeLinePrinter(arguments, lines, clock_.now());
    auto source = std::make_unique<test::ScriptedSource>();
    source_ = source.get();
    CaptionSession session;
    session.startedAt = clock_.now();
    finished_.clear();
    command_ = std::make_unique<CaptionsCommand>(
        arguments, "en_US", session, std::move(source),
        CaptionsCommand::Parts{*translation_, clock_, *printer_, lines, messages_->file()});
    connect(command_.get(), &CaptionsCommand::finished, this,
            [this](int status) { finished_.push_back(status); });
    command_->start();
    QVERIFY(source_->isStarted);
  }

 private Q_SLOTS:
  void printsEverySentenceOnItsOwnLine() {
    start();
    source_->say("One here. Two here.");
    QCOMPARE(out_->text(), QString("One here.\nTwo here.\n"));
    Q_EMIT source_->ended({});
    QCOMPARE(finished_, std::vector<int>{CaptionsCommand::kDone});
  }

  void waitsForTranslationsAndKeepsTheOrder() {
    start({.target = "es"});
    source_->say("One.");
    source_->say("Two.");
    QTRY_COMPARE(translation_->scripts.size(), std::size_t{1});
    auto& script = *translation_->scripts[0];
    QTRY_COMPARE(script.requests.size(), std::size_t{1});
    QCOMPARE(out_->text(), QString());
    Q_EMIT source_->ended({});
    script.requests[0].succeed("Uno.");
    QTRY_COMPARE(script.requests.size(), std::size_t{2});
    QCOMPARE(out_->text(), QString("One.\n    Uno.\n"));
    QVERIFY(finished_.empty());
    script.requests[1].fail("No luck");
    QTRY_COMPARE(finished_, std::vector<int>{CaptionsCommand::kDone});
    QCOMPARE(out_->text(), QString("One.\n    Uno.\nTwo.\n"));
    QCOMPARE(messages_->text(), QString("velun: Translation error: No luck\n"));
  }

  void tellsWhatFailed() {
    start();
    Q_EMIT source_->eventOccurred(StatusEvent{QString("Falling behind")});
    Q_EMIT source_->eventOccurred(StatusEvent{QString("Falling behind")});
    Q_EMIT source_->ended(QString("The disk is gone."));
    QCOMPARE(messages_->text(), QString("velun: Falling behind\nvelun: The disk is gone.\n"));
    QCOMPARE(finished_, std::vector<int>{CaptionsCommand::kFailed});
  }

  void anInterruptedLiveRunPrintsItsLastWordsAndIsDone() {
    start();
    command_->interrupt();
    QVERIFY(source_->isStopped);
    source_->say("Last words.");
    Q_EMIT source_->ended({});
    QCOMPARE(out_->text(), QString("Last words.\n"));
    QCOMPARE(finished_, std::vector<int>{CaptionsCommand::kDone});
  }

  void anInterruptedRecordingIsNotDone() {
    start({.recording = "talk.mp3"});
    command_->interrupt();
    QVERIFY(messages_->text().contains("interrupt again to end at once"));
    Q_EMIT source_->ended({});
    QCOMPARE(finished_, std::vector<int>{CaptionsCommand::kInterrupted});
  }

  void aSecondInterruptWaitsForNothing() {
    start();
    command_->interrupt();
    command_->interrupt();
    QCOMPARE(finished_, std::vector<int>{CaptionsCommand::kInterrupted});
  }

  void aFullDiskEndsTheRun() {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> full(std::fopen("/dev/full", "w"),
                                                               &std::fclose);
    QVERIFY(full);
    start({.recording = "talk.mp3"}, full.get());
    source_->say("One.");
    QCOMPARE(finished_, std::vector<int>{CaptionsCommand::kFailed});
    // It is said once, and the status stays.
    source_->say("Two.");
    Q_EMIT source_->ended({});
    QCOMPARE(finished_, std::vector<int>{CaptionsCommand::kFailed});
    QCOMPARE(messages_->text(),
             QString("velun: There is not enough disk space to write “standard output”.\n"));
  }

  void aRecordingsTimesAreShared() {
    start({.showsTimes = true});
    FinalEvent event{"One here. Two here.", "en_US"};
    using namespace std::chrono_literals;
    event.spoken = FinalEvent::Spoken{clock_.now() + 60s, clock_.now() + 64s};
    Q_EMIT source_->eventOccurred(event);
    QCOMPARE(out_->text(), QString("[0:01:00] One here.\n[0:01:02] Two here.\n"));
  }
};

QTEST_GUILESS_MAIN(CaptionsCommandTest)
#include "captions_command_test.moc"
