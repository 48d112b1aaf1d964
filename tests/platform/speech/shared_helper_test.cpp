// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/failure.h"
#include "platform/speech/neural/helper_program.h"
#include "platform/speech/neural/neural_backend.h"
#include "platform/speech/neural_fixture.h"
#include "platform/speech/neural_runs.h"
#include "support/suite.h"

#include <atomic>
#include <csignal>
#include <thread>

using namespace velun;
using namespace velun::test;

namespace {

constexpr std::chrono::seconds kTimeout{20};

QStringList finalsAtEnd(NeuralBackend& backend) {
  backend.finalize();
  QStringList finals;
  keepFinals(backend, finals);
  return finals;
}

}  // namespace

/// Recognizers with the same settings, in one real helper process.
class SharedHelperTest final : public test::Suite {
  Q_OBJECT

  const HelperProgram program_{helperProgram()};
  const std::vector<float> music_ = sound("h01.wav");
  const std::vector<float> numbers_ = sound("h11.wav");
  const QStringList musicText_{"Turn off the music now"};
  const QStringList numbersText_{"Five six nine ten eight"};

  static RecognizerSettings withOtherSilence() {
    RecognizerSettings settings = transducer();
    settings.endpointSilence = 0.7;
    return settings;
  }

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY2(hasRecognitionLibrary(), "The recognition library is missing: run scripts/setup.");
  }

  void eachHearsOnlyItsOwnAudio_data() {
    QTest::addColumn<bool>("isCtc");
    QTest::newRow("transducer") << false;
    QTest::newRow("CTC") << true;
  }
  void eachHearsOnlyItsOwnAudio() {
    QFETCH(bool, isCtc);
    const RecognizerSettings settings = isCtc ? zipformerCtc() : transducer();
    NeuralBackend first(program_, settings);
    NeuralBackend second(program_, settings);
    first.load();
    second.load();
    QCOMPARE(first.helperProcessId(), second.helperProcessId());
    const std::size_t end = std::max(music_.size(), numbers_.size());
    for (std::size_t at = 0; at < end; at += 1600) {
      const auto piece = [at](const std::vector<float>& all) {
        const std::size_t begin = std::min(at, all.size());
        return std::span(all).subspan(begin, std::min<std::size_t>(1600, all.size() - begin));
      };
      first.acceptAudio(piece(music_));
      second.acceptAudio(piece(numbers_));
    }
    QCOMPARE(finalsAtEnd(first), musicText_);
    QCOMPARE(finalsAtEnd(second), numbersText_);
  }

  void otherSettingsHaveAProcessOfTheirOwn() {
    NeuralBackend first(program_, transducer());
    NeuralBackend second(program_, withOtherSilence());
    first.load();
    second.load();
    QVERIFY(first.helperProcessId() != second.helperProcessId());
  }

  void theOtherGoesOnWhenOneIsClosed() {
    auto first = std::make_unique<NeuralBackend>(program_, transducer());
    NeuralBackend second(program_, transducer());
    first->load();
    second.load();
    feed(*first, music_);
    const pid_t process = second.helperProcessId();
    first.reset();
    feed(second, numbers_);
    QCOMPARE(finalsAtEnd(second), numbersText_);
    NeuralBackend third(program_, transducer());
    third.load();
    QCOMPARE(third.helperProcessId(), process);
    feed(third, music_);
    QCOMPARE(finalsAtEnd(third), musicText_);
  }

  void theProcessEndsWithTheLast() {
    pid_t process = 0;
    {
      NeuralBackend first(program_, transducer());
      NeuralBackend second(program_, transducer());
      first.load();
      second.load();
      process = first.helperProcessId();
      QCOMPARE(kill(process, 0), 0);
    }
    QVERIFY(kill(process, 0) != 0);
  }

  void cancellingOneLeavesTheOther() {
    NeuralBackend first(program_, transducer());
    NeuralBackend second(program_, transducer());
    first.load();
    second.load();
    first.cancel();
    QVERIFY_EXCEPTION_THROWN(first.finalize(), Failure);
    feed(second, numbers_);
    QCOMPARE(finalsAtEnd(second), numbersText_);
    // What was cancelled is no sign of damage.
    NeuralBackend third(program_, transducer());
    third.load();
    QCOMPARE(third.helperProcessId(), second.helperProcessId());
  }

  void failureOfOneLeavesTheOther() {
    NeuralBackend good(program_, transducer());
    good.load();
    const auto bad = program_.connect(transducer(), kTimeout, false);
    QCOMPARE(bad->processId(), good.helperProcessId());
    QCOMPARE(bad->receive().kind, RecognizerMessage::Kind::ready);
    bad->send(RecognizerMessage::Kind::heard);
    QVERIFY_EXCEPTION_THROWN(bad->receive(), HelperEnded);
    feed(good, numbers_);
    QCOMPARE(finalsAtEnd(good), numbersText_);
    // Its process is not trusted any more.
    NeuralBackend next(program_, transducer());
    next.load();
    QVERIFY(next.helperProcessId() != good.helperProcessId());
  }

  void crashEndsBothAndThenEachHasItsOwn() {
    NeuralBackend first(program_, transducer());
    NeuralBackend second(program_, transducer());
    first.load();
    second.load();
    kill(first.helperProcessId(), SIGKILL);
    QVERIFY_EXCEPTION_THROWN(first.finalize(), Failure);
    QVERIFY_EXCEPTION_THROWN(second.finalize(), Failure);
    NeuralBackend third(program_, transducer());
    NeuralBackend fourth(program_, transducer());
    third.standAlone();
    fourth.standAlone();
    third.load();
    fourth.load();
    QVERIFY(third.helperProcessId() != fourth.helperProcessId());
    NeuralBackend fifth(program_, transducer());
    fifth.load();
    QVERIFY(fifth.helperProcessId() != third.helperProcessId());
    QVERIFY(fifth.helperProcessId() != fourth.helperProcessId());
  }

  void oneThatIsAlwaysBusyDoesNotDelayTheOther() {
    NeuralBackend quiet(program_, transducer());
    quiet.load();
    std::atomic<bool> isDone = false;
    std::atomic<int> busyFeeds = 0;
    std::thread busy([&] {
      NeuralBackend backend(program_, transducer());
      backend.load();
      while (!isDone) {
        feed(backend, numbers_);
        ++busyFeeds;
        backend.poll();
      }
    });
    VERIFY_SOON(busyFeeds > 3);
    feed(quiet, music_);
    const QStringList finals = finalsAtEnd(quiet);
    const int before = busyFeeds;
    VERIFY_SOON(busyFeeds > before);
    isDone = true;
    busy.join();
    QCOMPARE(finals, musicText_);
  }
};

QTEST_GUILESS_MAIN(SharedHelperTest)
#include "shared_helper_test.moc"
