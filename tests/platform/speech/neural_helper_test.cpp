// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/failure.h"
#include "platform/speech/helper/result_codec.h"
#include "platform/speech/neural/neural_backend.h"
#include "platform/speech/neural_fixture.h"
#include "platform/speech/neural_runs.h"
#include "support/suite.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <csignal>
#include <functional>
#include <QProcess>
#include <QTemporaryDir>
#include <sys/socket.h>
#include <thread>
#include <unistd.h>

using namespace velun;
using namespace velun::test;

/// Runs whose helper program crashes, hangs or cannot start.
class NeuralHelperTest final : public test::Suite {
  Q_OBJECT

  const std::vector<float> music_ = sound("h01.wav");
  const std::vector<float> numbers_ = sound("h11.wav");

  static bool failsWhenCancelled(NeuralBackend& backend, void (NeuralBackend::*operation)()) {
    std::atomic<bool> hasFailed = false;
    std::thread working([&] {
      try {
        (backend.*operation)();
      } catch (const Failure&) {
        hasFailed = true;
      }
    });
    backend.cancel();
    working.join();
    return hasFailed;
  }

  /// Bytes as the shell's printf takes them.
  static QByteArray escaped(const QByteArray& bytes) {
    QByteArray text;
    for (const char byte : bytes) {
      text += '\\' + QByteArray::number(static_cast<std::uint8_t>(byte), 8).rightJustified(3, '0');
    }
    return text;
  }

  static QString failureOfOperation(const std::function<void()>& operation) {
    try {
      operation();
    } catch (const Failure& failure) {
      return failure.errorDescription();
    }
    return {};
  }

  static QString failureOf(const RecognizerSettings& settings) {
    return failureOfOperation([&settings] {
      NeuralBackend backend(helperProgram(), settings);
      backend.load();
    });
  }

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY2(hasRecognitionLibrary(), "The recognition library is missing: run scripts/setup.");
  }

  void resultsFromBeforeACrashAreKept() {
    NeuralBackend backend(helperProgram(), transducer());
    backend.load();
    feed(backend, music_ + silence(1.2) + sound("sixseven.wav"));
    std::vector<TranscriptionResult> results;
    VERIFY_SOON(([&] {
      for (const TranscriptionResult& each : backend.poll()) results.push_back(each);
      return !results.empty() && results.back().text.startsWith("Six");
    })());
    QCOMPARE(results.back().isFinal, false);
    QCOMPARE(std::erase_if(results, [](const auto& each) { return !each.isFinal; }) > 0, true);
    QCOMPARE(results.size(), 1U);
    QCOMPARE(results[0].text, QString("Turn off the music now"));
    kill(backend.helperProcessId(), SIGKILL);
    QCOMPARE(failureOfOperation([&] {
               feed(backend, numbers_);
               backend.finalize();
             }),
             QString("The speech recognizer stopped unexpectedly. Start captions again."));
  }

  void finalsTellWhereTheirWordsEnd_data() {
    QTest::addColumn<bool>("isCtc");
    QTest::newRow("transducer") << false;
    QTest::newRow("CTC") << true;
  }
  void finalsTellWhereTheirWordsEnd() {
    QFETCH(bool, isCtc);
    NeuralBackend backend(helperProgram(), isCtc ? zipformerCtc() : transducer());
    backend.load();
    const std::vector<float> first = music_ + silence(1.2);
    feed(backend, first + numbers_);
    backend.finalize();
    std::vector<TranscriptionResult> finals = backend.poll();
    std::erase_if(finals, [](const auto& each) { return !each.isFinal; });
    QCOMPARE(finals.size(), 2U);
    const auto isLoud = [](float sample) {
      return std::abs(sample) > 0.02F;
    };
    const auto lastLoud = std::find_if(music_.rbegin(), music_.rend(), isLoud).base();
    const double speech = static_cast<double>(lastLoud - music_.begin()) / 16000;
    QVERIFY(finals[0].until && finals[1].until);
    QVERIFY2(*finals[0].until > speech, qPrintable(QString::number(*finals[0].until)));
    QVERIFY2(*finals[0].until < speech + 1, qPrintable(QString::number(*finals[0].until)));
    QVERIFY(*finals[1].until <= static_cast<double>(first.size() + numbers_.size()) / 16000);
  }

  void phraseThatIsEndedInSpeechIsCut() {
    RecognizerSettings settings = transducer();
    settings.maxPhrase = 1;
    NeuralBackend backend(helperProgram(), settings);
    backend.load();
    feed(backend, numbers_ + numbers_ + numbers_ + silence(1.5));
    backend.finalize();
    std::vector<TranscriptionResult> finals = backend.poll();
    std::erase_if(finals, [](const auto& each) { return !each.isFinal; });
    QVERIFY(std::ranges::any_of(finals, &TranscriptionResult::isCut));
    QVERIFY(!finals.back().isCut);
  }

  void cancelInterruptsAHangingHelper() {
    NeuralBackend backend(helperProgram(), transducer());
    backend.load();
    const pid_t helper = backend.helperProcessId();
    kill(helper, SIGSTOP);
    QVERIFY(failsWhenCancelled(backend, &NeuralBackend::finalize));
    // No other helper was started.
    QCOMPARE(backend.helperProcessId(), helper);
  }

  void cancelInterruptsLoading() {
    NeuralBackend backend(silentProgram(), transducer());
    QVERIFY(failsWhenCancelled(backend, &NeuralBackend::load));
  }

  void lastResultsOfTheHelperAreKept() {
    const QTemporaryDir dir;
    const QString program = dir.filePath("helper");
    QFile script(program);
    QVERIFY(script.open(QIODevice::WriteOnly));
    using Kind = RecognizerMessage::Kind;
    script.write("#!/bin/sh\nhead -c 5 > /dev/null; printf '" + escaped(encoded(Kind::ready)) +
                 escaped(encoded(Kind::final, encodedResult({"one", true}))) +
                 escaped(encoded(Kind::draft, encodedResult({"two"}))) + "'\n");
    script.close();
    QVERIFY(script.setPermissions(QFile::ReadOwner | QFile::ExeOwner));
    NeuralBackend backend(program, transducer());
    backend.load();
    QVERIFY_EXCEPTION_THROWN(backend.finalize(), Failure);
    const std::vector<TranscriptionResult> results = backend.poll();
    QCOMPARE(results.size(), 2U);
    QVERIFY(results[0] == TranscriptionResult({"one", true}));
    QVERIFY(results[1] == TranscriptionResult({"two"}));
    QVERIFY_EXCEPTION_THROWN(backend.poll(), Failure);
  }

  void unresponsiveHelperCountsAsEnded() {
    HelperProcess helper(silentProgram());
    QVERIFY(!helper.tryReceive());
    QVERIFY_EXCEPTION_THROWN(helper.receive(std::chrono::milliseconds(50)), HelperEnded);
  }

  void helperThatDecodesNothingCountsAsEnded() {
    HelperProcess helper(silentProgram(), std::chrono::milliseconds(50));
    const auto waitForever = [&helper] {
      while (true) helper.awaitMessage(std::chrono::milliseconds(20));
    };
    QVERIFY_EXCEPTION_THROWN(waitForever(), HelperEnded);
  }

  void helperThatEndsAtOnceIsReported() {
    try {
      NeuralBackend backend(QString("/usr/bin/false"), transducer());
      backend.load();
      QFAIL("it started");
    } catch (const Failure& failure) {
      QCOMPARE(failure.errorDescription(), QString("The speech recognizer couldn’t be started. Try "
                                                   "again, or choose another language."));
    }
  }

  void missingProgramIsReported() {
    try {
      NeuralBackend backend(QString("/nonexistent/velun-recognizer"), transducer());
      backend.load();
      QFAIL("it started");
    } catch (const Failure& failure) {
      QVERIFY2(failure.errorDescription().startsWith("The speech recognizer couldn’t be started"),
               qPrintable(failure.errorDescription()));
    }
  }

  void damagedModelIsReported() {
    RecognizerSettings settings = transducer();
    settings.encoder = neuralData("joiner.int8.onnx");
    const QString text = failureOf(settings);
    QVERIFY2(text.contains("(joiner.int8.onnx: "), qPrintable(text));
    settings = transducer();
    settings.tokens = neuralData("h01.wav");
    QVERIFY2(failureOf(settings).contains("h01.wav"), qPrintable(failureOf(settings)));
  }

  void failureInsideSherpaIsReported() {
    const QTemporaryDir dir;
    QFile source(neuralData("nemo-ctc.int8.onnx"));
    QVERIFY(source.open(QIODevice::ReadOnly));
    QFile damaged(dir.filePath("model.onnx"));
    QVERIFY(damaged.open(QIODevice::WriteOnly));
    damaged.write(source.readAll().replace("Conv", "Xonv"));
    damaged.close();
    RecognizerSettings settings = nemoCtc();
    settings.nemoCtc = damaged.fileName();
    const QString text = failureOf(settings);
    QVERIFY2(text.startsWith("The speech recognizer couldn’t be started ("), qPrintable(text));
  }

  void tooFewTokensEndOnlyTheRun() {
    const QTemporaryDir dir;
    QFile tokens(dir.filePath("tokens.txt"));
    QVERIFY(tokens.open(QIODevice::WriteOnly));
    tokens.write("<blk> 0\n");
    tokens.close();
    RecognizerSettings settings = transducer();
    settings.tokens = tokens.fileName();
    try {
      finalsOf(settings, music_ + music_);
      QFAIL("it went on");
    } catch (const Failure& failure) {
      QVERIFY(failure.errorDescription().startsWith("The speech recognizer stopped unexpectedly"));
    }
  }

  void helperEndsWhenTheProgramCrashes() {
    std::array<int, 2> control{};
    QCOMPARE(socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, control.data()), 0);
    QProcess helper;
    helper.setChildProcessModifier([&] { dup2(control[0], kControlDescriptor); });
    helper.start(helperProgram(), QStringList());
    QVERIFY(helper.waitForStarted());
    helper.write(encoded(RecognizerMessage::Kind::configure, transducer().toJson()));
    QVERIFY(helper.waitForReadyRead());
    close(control[0]);
    QCOMPARE(helper.state(), QProcess::Running);
    // As the system does when a process ends. The standard input stays open.
    close(control[1]);
    QVERIFY(helper.waitForFinished());
    QCOMPARE(helper.exitCode(), 0);
  }
};

QTEST_GUILESS_MAIN(NeuralHelperTest)
#include "neural_helper_test.moc"
