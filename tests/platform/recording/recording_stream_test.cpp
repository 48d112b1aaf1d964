// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/recording/recording_stream.h"

#include "language/localization.h"
#include "made_recordings.h"
#include "platform/foundation/failure.h"
#include "platform/speech/speech_input.h"
#include "support/suite.h"

#include <algorithm>
#include <QFile>
#include <QLocalServer>
#include <QTcpServer>
#include <QTemporaryDir>

using namespace velun;

namespace {

std::vector<float> samplesOf(const QString& path) {
  RecordingStream stream(test::decoderProgram(), path);
  stream.open();
  std::vector<float> all;
  while (true) {
    const std::vector<float> piece = stream.next();
    if (piece.empty()) return all;
    all.insert(all.end(), piece.begin(), piece.end());
  }
}

double secondsOf(const QString& path) {
  return static_cast<double>(samplesOf(path).size()) / kSpeechSampleRate;
}

/// The loudest sample between two times in seconds.
float peak(const std::vector<float>& samples, double from, double to) {
  const auto at = [](double seconds) {
    return static_cast<std::ptrdiff_t>(seconds * kSpeechSampleRate);
  };
  return *std::max_element(samples.begin() + at(from), samples.begin() + at(to));
}

QString refusal(const QString& path) {
  try {
    samplesOf(path);
  } catch (const Failure& failure) {
    return failure.errorDescription();
  }
  return {};
}

}  // namespace

class RecordingStreamTest final : public test::Suite {
  Q_OBJECT

  QTemporaryDir folder_;

  QString make(const QString& name, const QString& arguments) const {
    return test::makeRecording(folder_.path(), name, arguments);
  }
  QString write(const QString& name, const QByteArray& bytes) const {
    QFile file(folder_.filePath(name));
    if (file.open(QFile::WriteOnly)) file.write(bytes);
    return file.fileName();
  }

 private Q_SLOTS:
  void cleanup() { Localization::shared().setLanguage(AppLanguage::english); }

  void decodesTheUsualFormats_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("options");
    const QString video = " -f lavfi -i color=s=64x64:d=3 ";
    QTest::newRow("wav") << "a.wav"
                         << "";
    QTest::newRow("wav, 8 bits") << "8.wav"
                                 << " -c:a pcm_u8 -ar 8000";
    QTest::newRow("stereo flac") << "a.flac"
                                 << " -ac 2";
    QTest::newRow("mp3") << "a.mp3"
                         << "";
    QTest::newRow("opus") << "a.opus"
                          << "";
    QTest::newRow("ogg") << "a.ogg"
                         << " -c:a libvorbis";
    QTest::newRow("m4a") << "a.m4a"
                         << "";
    QTest::newRow("mp4 with a picture") << "a.mp4" << video;
    QTest::newRow("mkv with a picture") << "a.mkv" << video;
    QTest::newRow("webm with a picture") << "a.webm" << video + "-c:a libopus";
    QTest::newRow("a name with a colon") << "http:x.wav"
                                         << "";
  }
  void decodesTheUsualFormats() {
    QFETCH(QString, name);
    QFETCH(QString, options);
    const QString path =
        make("x" + name.section(u'.', -1).prepend(u'.'), (test::kTone + options).simplified());
    QVERIFY(QFile::rename(path, folder_.filePath(name)));
    RecordingStream stream(test::decoderProgram(), folder_.filePath(name));
    stream.open();
    QVERIFY(std::abs(stream.duration().value_or(0) - 3) < 0.15);
    const std::vector<float> samples = samplesOf(folder_.filePath(name));
    QVERIFY(std::abs(static_cast<double>(samples.size()) / kSpeechSampleRate - 3) < 0.15);
    const float loudest = peak(samples, 0.5, 2.5);
    QVERIFY2(loudest > 0.35F && loudest < 0.75F, qPrintable(QString::number(loudest)));
  }

  void soundThatStartsLateOrStopsBetweenKeepsItsTime() {
    const QString late =
        make("late.mkv", "-f lavfi -i color=s=64x64:d=6 -itsoffset 2 " + test::kTone);
    const std::vector<float> samples = samplesOf(late);
    QVERIFY(peak(samples, 0, 1.9) < 0.01F);
    QVERIFY(peak(samples, 2.2, 4.8) > 0.35F);
    // Of nine seconds the middle three are cut out of the sound, and not out of its times.
    const QString gap =
        make("gap.mkv", "-f lavfi -i sine=d=9,aselect=lt(t\\,3)+gt(t\\,6) -c:a pcm_s16le");
    const std::vector<float> between = samplesOf(gap);
    QVERIFY(std::abs(static_cast<double>(between.size()) / kSpeechSampleRate - 9) < 0.2);
    QVERIFY(peak(between, 3.3, 5.7) < 0.01F);
  }

  void aDamagedFileGivesWhatCanBeDecoded() {
    QFile file(make("whole.mp3", test::kTone));
    QVERIFY(file.open(QFile::ReadOnly));
    QByteArray bytes = file.readAll();
    const QByteArray half = bytes.left(bytes.size() / 2);
    QVERIFY(secondsOf(write("half.mp3", half)) > 1);
    bytes.replace(bytes.size() / 2, 2000, QByteArray(2000, '\x5a'));
    QVERIFY(secondsOf(write("hole.mp3", bytes)) > 2);
  }

  void aFileThatBreaksOffIsSaidAfterWhatCouldBeRead_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("options");
    QTest::newRow("mp4") << "talk.mp4"
                         << " -movflags faststart";
    QTest::newRow("mkv") << "talk.mkv"
                         << "";
    QTest::newRow("flac") << "talk.flac"
                          << "";
    QTest::newRow("mp3") << "talk.mp3"
                         << "";
  }
  void aFileThatBreaksOffIsSaidAfterWhatCouldBeRead() {
    QFETCH(QString, name);
    QFETCH(QString, options);
    QFile file(make(name, "-f lavfi -i sine=d=20" + options));
    QVERIFY(file.open(QFile::ReadOnly));
    RecordingStream stream(test::decoderProgram(),
                           write("half-" + name, file.readAll().left(file.size() / 2)));
    stream.open();
    std::size_t count = 0;
    try {
      while (true) {
        const std::size_t more = stream.next().size();
        QVERIFY2(more > 0, "it is called complete");
        count += more;
      }
    } catch (const Failure& failure) {
      QCOMPARE(failure.errorDescription(), QString("The rest of “half-%1” can’t be read: the file "
                                                   "is damaged, or its disk was removed.")
                                               .arg(name));
    }
    QVERIFY(static_cast<double>(count) / kSpeechSampleRate > 5);
  }

  void aVideoMayBeLongerThanItsSound() {
    const QString video = " -f lavfi -i color=s=64x64:d=9";
    QVERIFY(secondsOf(make("film.mkv", test::kTone + video)) < 3.2);
    QVERIFY(secondsOf(make("film.mp4", test::kTone + video)) < 3.2);
  }

  void whatFollowsTheSoundIsNoFault() {
    QFile file(make("tail.aac", test::kTone));
    QVERIFY(file.open(QFile::Append));
    file.write(QByteArray(20000, '\x5a'));
    file.close();
    QVERIFY(secondsOf(file.fileName()) > 2.5);
  }

  void saysWhyARecordingCannotBeRead() {
    QCOMPARE(refusal(folder_.filePath("none.mp3")), QString("“none.mp3” doesn’t exist."));
    const QString other = "“%1” isn’t a sound or video file, or it is damaged.";
    QCOMPARE(refusal(write("empty.mp3", {})), other.arg("empty.mp3"));
    QCOMPARE(refusal(write("text.mp3", "Not a recording at all.")), other.arg("text.mp3"));
    QCOMPARE(refusal(make("silent.mp4", "-f lavfi -i color=s=64x64:d=1 -an")),
             QString("“silent.mp4” has no sound."));
    QLocalServer server;
    QVERIFY(server.listen(folder_.filePath("socket")));
    QCOMPARE(refusal(server.fullServerName()), QString("“socket” couldn’t be read."));
    QCOMPARE(refusal(folder_.path()),
             QString("“%1” couldn’t be read.").arg(QFileInfo(folder_.path()).fileName()));
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(refusal(folder_.filePath("none.mp3")), QString("“none.mp3” 파일이 없습니다."));
  }

  void aPlaylistFetchesNothing() {
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    const QString address = QString("http://127.0.0.1:%1/a.mp3").arg(server.serverPort());
    const QByteArray playlist = "#EXTM3U\n#EXT-X-TARGETDURATION:10\n#EXTINF:10,\n" +
                                address.toUtf8() + "\n#EXT-X-ENDLIST\n";
    QVERIFY(!refusal(write("list.m3u8", playlist)).isEmpty());
    QVERIFY(!server.waitForNewConnection(0));
  }

  void aMissingDecoderIsSaid() {
    try {
      RecordingStream stream("/nowhere/velun-decoder", "a.mp3");
      QFAIL("it started");
    } catch (const Failure& failure) {
      QCOMPARE(failure.errorDescription(),
               QString("The program that reads recordings can’t be started. Install Velun again."));
    }
  }

  void aDecoderThatEndsEarlyIsSaid() {
    QFile program(write("crash",
                        "#!/bin/sh\nprintf '\\0\\0\\0\\0\\0\\0\\0\\0'\n"
                        "printf '\\0\\0\\0\\0\\0\\0\\10\\100\\100\\0\\0\\0'\n"));
    QVERIFY(program.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    RecordingStream stream(program.fileName(), "talk.mp3");
    stream.open();
    QCOMPARE(stream.duration(), std::optional(3.0));
    try {
      stream.next();
      QFAIL("it went on");
    } catch (const Failure& failure) {
      QCOMPARE(failure.errorDescription(),
               QString("“talk.mp3” can’t be read any further: the program that decodes it has "
                       "ended."));
    }
  }
};

QTEST_GUILESS_MAIN(RecordingStreamTest)
#include "recording_stream_test.moc"
