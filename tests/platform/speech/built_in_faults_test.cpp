// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/failure.h"
#include "platform/speech/built_in/built_in_backend.h"
#include "platform/speech/built_in/built_in_recognizer_provider.h"
#include "platform/speech/model_copy.h"
#include "platform/speech/neural_runs.h"
#include "support/suite.h"

#include <csignal>
#include <limits>

using namespace velun;
using namespace velun::test;

namespace {

RecognizerSettings settingsOf(const ModelCopy& copy) {
  RecognizerSettings settings;
  settings.voskLibrary = copy.files().library;
  settings.voskModel = copy.files().model;
  settings.voskModelSums = copy.content("SHA256SUMS");
  return settings;
}

QString failureOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const Failure& failure) {
    return failure.errorDescription();
  }
  return {};
}

}  // namespace

/// The built-in recognizer when its helper program dies or hangs.
class BuiltInFaultsTest final : public test::Suite {
  Q_OBJECT

  const ModelCopy copy_;
  const std::vector<float> he_ = clip("0880");

  /// Waits until the last result begins with the text.
  static void waitForDraft(RecognizerBackend& backend, const QString& text,
                           std::vector<TranscriptionResult>& results) {
    VERIFY_SOON(([&] {
      for (TranscriptionResult& each : backend.poll()) results.push_back(std::move(each));
      return !results.empty() && results.back().text.startsWith(text);
    })());
  }

 private Q_SLOTS:
  /// As on processors for which there is no libvosk.
  void withoutLibraryThereIsNoBuiltInRecognizer() {
    BuiltInFiles files = copy_.files();
    files.library.clear();
    const BuiltInRecognizerProvider provider(files);
    QVERIFY(provider.candidates("en_US").empty());
    QVERIFY(!provider.isInstalled("en_US"));
  }

  void deadHelperIsAFailureAfterItsResults() {
    BuiltInBackend backend(copy_.files().program, settingsOf(copy_), nullptr);
    backend.load();
    std::vector<TranscriptionResult> results;
    feed(backend, he_);
    waitForDraft(backend, "He was", results);
    kill(backend.helperProcessId(), SIGKILL);
    QCOMPARE(failureOf([&] {
               feed(backend, he_);
               backend.finalize();
             }),
             QString("The speech recognizer stopped unexpectedly. Start captions again."));
  }

  void hangingHelperIsAFailure() {
    NeuralBackend backend(copy_.files().program, settingsOf(copy_), std::chrono::seconds(6));
    backend.load();
    kill(backend.helperProcessId(), SIGSTOP);
    // More than the pipe between the processes can hold.
    QCOMPARE(failureOf([&] { feed(backend, he_); }),
             QString("The speech recognizer stopped unexpectedly. Start captions again."));
  }

  void endlessDecodingIsEnded() {
    const ModelCopy copy;
    // Without its scales, which were emptied here, libvosk decodes for minutes.
    copy.replace("conf/model.conf", QByteArray());
    copy.accept("conf/model.conf");
    NeuralBackend backend(copy.files().program, settingsOf(copy), std::chrono::seconds(1));
    backend.load();
    QCOMPARE(failureOf([&] {
               feed(backend, he_ + he_ + he_);
               backend.finalize();
             }),
             QString("The speech recognizer stopped unexpectedly. Start captions again."));
  }

  void samplesThatAreNoNumbersAreSilence() {
    NeuralBackend backend(copy_.files().program, settingsOf(copy_));
    backend.load();
    std::vector<float> samples = he_;
    for (std::size_t i = 0; i < samples.size(); i += 997) {
      samples[i] = std::numeric_limits<float>::quiet_NaN();
    }
    samples[5000] = std::numeric_limits<float>::infinity();
    QStringList finals;
    feed(backend, samples);
    backend.finalize();
    keepFinals(backend, finals);
    QCOMPARE(finals.size(), 1);
    QVERIFY2(finals[0].startsWith("he was"), qPrintable(finals[0]));
  }

  void missingLibraryIsNotInstalled() {
    BuiltInFiles files = builtInFiles();
    QVERIFY(BuiltInRecognizerProvider(files).isInstalled("en_US"));
    files.library.clear();
    QVERIFY(!BuiltInRecognizerProvider(files).isInstalled("en_US"));
    QCOMPARE(BuiltInRecognizerProvider(files).supportedLocales(), QStringList("en_US"));
  }
};

QTEST_GUILESS_MAIN(BuiltInFaultsTest)
#include "built_in_faults_test.moc"
