// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/failure.h"
#include "platform/speech/helper/result_codec.h"
#include "platform/speech/neural/neural_backend.h"
#include "platform/speech/neural_fixture.h"
#include "platform/speech/neural_runs.h"
#include "support/suite.h"

#include <atomic>
#include <csignal>
#include <QTemporaryDir>
#include <sys/wait.h>
#include <thread>

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

  static QString failureOf(const RecognizerSettings& settings) {
    try {
      NeuralBackend backend(helperProgram(), settings);
      backend.load();
    } catch (const Failure& failure) {
      return failure.errorDescription();
    }
    return {};
  }

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY2(hasRecognitionLibrary(), "The recognition library is missing: run scripts/setup.");
  }

  void crashLosesOnePhraseAtMost() {
    NeuralBackend backend(helperProgram(), transducer());
    backend.load();
    QStringList finals;
    feed(backend, music_ + silence(1.2) + sound("sixseven.wav"));
    std::vector<TranscriptionResult> results;
    VERIFY_SOON(([&] {
      for (const TranscriptionResult& each : backend.poll()) results.push_back(each);
      return !results.empty() && results.back().text.startsWith("Six");
    })());
    QCOMPARE(results.back().isFinal, false);
    const QString shown = results.back().text;
    for (const TranscriptionResult& each : results) {
      if (each.isFinal) finals.append(each.text);
    }
    kill(backend.helperProcessId(), SIGKILL);
    feed(backend, silence(0.5) + numbers_ + silence(1.2));
    backend.finalize();
    keepFinals(backend, finals);
    QCOMPARE(finals.size(), 3);
    QCOMPARE(finals[0], QString("Turn off the music now"));
    QVERIFY2(finals[1].startsWith(shown), qPrintable(finals[1]));
    QVERIFY2(finals[2].endsWith("ten eight"), qPrintable(finals[2]));

    kill(backend.helperProcessId(), SIGKILL);
    try {
      feed(backend, music_);
      backend.finalize();
      QFAIL("it went on");
    } catch (const Failure& failure) {
      QCOMPARE(failure.errorDescription(),
               QString("The speech recognizer stopped unexpectedly. Start captions again."));
    }
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
    // It takes its only argument, a number, for seconds, and says nothing.
    NeuralBackend backend("/usr/bin/sleep", transducer());
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
    QStringList finals;
    keepFinals(backend, finals);
    QCOMPARE(finals, QStringList({"one", "two", "one", "two"}));
    QVERIFY_EXCEPTION_THROWN(backend.poll(), Failure);
  }

  void unresponsiveHelperCountsAsEnded() {
    // It takes its only argument, a number, for seconds, and says nothing.
    HelperProcess helper("/usr/bin/sleep");
    QVERIFY(!helper.tryReceive());
    QVERIFY_EXCEPTION_THROWN(helper.receive(std::chrono::milliseconds(50)), HelperEnded);
  }

  void helperThatDecodesNothingCountsAsEnded() {
    HelperProcess helper("/usr/bin/sleep", std::chrono::milliseconds(50));
    const auto waitForever = [&helper] {
      while (true) helper.awaitMessage(std::chrono::milliseconds(20));
    };
    QVERIFY_EXCEPTION_THROWN(waitForever(), HelperEnded);
  }

  void helperThatEndsAtOnceIsReported() {
    try {
      NeuralBackend backend("/usr/bin/false", transducer());
      backend.load();
      QFAIL("it started");
    } catch (const Failure& failure) {
      QCOMPARE(failure.errorDescription(), QString("The speech recognizer couldn’t be started. Try "
                                                   "again, or choose another language."));
    }
  }

  void missingProgramIsReported() {
    try {
      NeuralBackend backend("/nonexistent/velun-recognizer", transducer());
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

  void helperEndsWithItsThread() {
    pid_t process = 0;
    std::thread([&process] {
      // Never destroyed, as when the program crashes.
      auto* left = new HelperProcess(helperProgram());
      left->send(RecognizerMessage::Kind::configure, transducer().toJson());
      left->receive();
      process = left->processId();
      leaked_ = left;
    }).join();
    int status = 0;
    QCOMPARE(waitpid(process, &status, 0), process);
    QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);
  }

 private:
  static inline HelperProcess* leaked_ = nullptr;  ///< still known, so that it is no leak
};

QTEST_GUILESS_MAIN(NeuralHelperTest)
#include "neural_helper_test.moc"
