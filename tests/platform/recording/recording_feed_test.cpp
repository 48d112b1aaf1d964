// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/recording/recording_feed.h"

#include "made_recordings.h"
#include "support/suite.h"

#include <QSignalSpy>
#include <QTemporaryDir>

using namespace velun;

class RecordingFeedTest final : public test::Suite {
  Q_OBJECT

  QTemporaryDir folder_;
  std::shared_ptr<SpeechInput> input_;

 private Q_SLOTS:
  void init() {
    Suite::init();
    input_ = std::make_shared<SpeechInput>();
  }

  void passesEverythingAsFastAsItIsTaken() {
    const QString path = test::makeRecording(folder_.path(), "long.wav",
                                             "-f lavfi -i sine=d=60:r=16000 -c:a pcm_s16le");
    RecordingFeed feed(test::decoderProgram(), path, input_);
    QSignalSpy opened(&feed, &RecordingFeed::opened);
    QSignalSpy ended(&feed, &RecordingFeed::ended);
    double seconds = 0;
    double mostPending = 0;
    while (std::optional<SpeechSamples> piece = input_->next()) {
      mostPending = std::max(mostPending, input_->pendingSeconds());
      seconds += piece->seconds();
    }
    QVERIFY(std::abs(seconds - 60) < 0.01);
    QVERIFY2(mostPending < 4, "a recognizer would skip sound");
    QTRY_COMPARE(ended.size(), 1);
    QVERIFY(!ended[0][0].value<std::optional<QString>>());
    QCOMPARE(opened.size(), 1);
    QVERIFY(std::abs(opened[0][0].value<std::optional<double>>().value_or(0) - 60) < 0.01);
    QVERIFY(std::abs(feed.position() - 60) < 0.01);
    QVERIFY(input_->isDrained());
  }

  void saysWhyItCannotGoOnAndEndsTheInput() {
    RecordingFeed feed(test::decoderProgram(), folder_.filePath("none.wav"), input_);
    QSignalSpy ended(&feed, &RecordingFeed::ended);
    QVERIFY(!input_->next());
    QTRY_COMPARE(ended.size(), 1);
    QCOMPARE(ended[0][0].value<std::optional<QString>>().value_or(QString()),
             QString("“none.wav” doesn’t exist."));
  }

  void canBeDestroyedWhileNobodyTakesAnything() {
    const QString path = test::makeRecording(folder_.path(), "untaken.wav",
                                             "-f lavfi -i sine=d=60:r=16000 -c:a pcm_s16le");
    {
      RecordingFeed feed(test::decoderProgram(), path, input_);
      QTRY_VERIFY(input_->pendingSeconds() > 2.5);
    }
    QVERIFY(input_->isFinished());
  }

  void canBeDestroyedWhileTheDecoderHangs() {
    const QString program = folder_.filePath("hang");
    QFile file(program);
    QVERIFY(file.open(QFile::WriteOnly));
    file.write("#!/bin/sh\nexec tail -f /dev/null\n");
    file.close();
    QVERIFY(file.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    const auto feed = std::make_unique<RecordingFeed>(program, "a.wav", input_);
    QVERIFY(!input_->isFinished());
  }
};

QTEST_GUILESS_MAIN(RecordingFeedTest)
#include "recording_feed_test.moc"
