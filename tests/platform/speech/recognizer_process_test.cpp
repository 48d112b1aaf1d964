// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/built_in_fixture.h"
#include "platform/speech/neural_runs.h"
#include "platform/speech/observed_run.h"
#include "support/await.h"
#include "support/installed_recognizer.h"
#include "support/suite.h"

#include <csignal>
#include <QDir>
#include <QTemporaryDir>

using namespace velun;
using namespace velun::test;

namespace {

/// A run with real helper processes.
struct Fixture : ObservedRun {
  void hear(const std::vector<float>& samples) {
    for (std::size_t at = 0; at < samples.size(); at += 320) {
      const std::size_t end = std::min(samples.size(), at + 320);
      input->yield({{samples.begin() + static_cast<std::ptrdiff_t>(at),
                     samples.begin() + static_cast<std::ptrdiff_t>(end)}});
    }
  }
};

SpeechRecognizer toy(const RecognizerSettings& settings = transducer()) {
  return {"toy", "Toy", [settings]() -> std::unique_ptr<RecognizerBackend> {
            return std::make_unique<NeuralBackend>(helperProgram(), settings);
          }};
}

/// The same one, in a process that it may share.
SpeechRecognizer sharedToy(const HelperProgram& program) {
  return {"toy", "Toy", [program]() -> std::unique_ptr<RecognizerBackend> {
            return std::make_unique<NeuralBackend>(program, transducer());
          }};
}

SpeechRecognizer builtIn() {
  return {"built-in", "Built-in",
          test::installedRecognizer(BuiltInRecognizerProvider(builtInFiles()), "en_US")};
}

/// The processes that this one has started, by the ids that the system keeps per thread.
std::vector<pid_t> helpers() {
  std::vector<pid_t> found;
  const QString tasks = "/proc/self/task/";
  for (const QString& task : QDir(tasks).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    QFile file(tasks + task + "/children");
    if (!file.open(QIODevice::ReadOnly)) continue;
    for (const QByteArray& id : file.readAll().split(' ')) {
      if (id.toInt() > 0) found.push_back(id.toInt());
    }
  }
  return found;
}

}  // namespace

/// Changes of the recognizer between real processes: sherpa-onnx with a tiny model, and the
/// built-in recognizer.
class RecognizerProcessTest final : public Suite {
  Q_OBJECT

  const std::vector<float> music_ = sound("h01.wav");
  const std::vector<float> numbers_ = sound("h11.wav");
  const std::vector<float> he_ = clip("0880");
  const QString musicText_ = "Turn off the music now";

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY2(hasRecognitionLibrary(), "The recognition library is missing: run scripts/setup.");
  }

  void helperKilledInAPhraseLosesNoWord() {
    Fixture f;
    f.start({toy(), builtIn()});
    const auto half = static_cast<std::ptrdiff_t>(music_.size() / 2);
    f.hear({music_.begin(), music_.begin() + half});
    QTRY_VERIFY_WITH_TIMEOUT(!f.drafts.isEmpty(), 60'000);
    const std::vector<pid_t> first = helpers();
    QCOMPARE(first.size(), 1U);
    kill(first.front(), SIGKILL);
    f.hear({music_.begin() + half, music_.end()});
    test::await(f.run->finish());
    QCOMPARE(f.finals, QStringList(musicText_));
    QVERIFY(f.notices.isEmpty() && f.briefNotices.isEmpty() && f.failed.isEmpty());
    QCOMPARE(f.ends, QStringList("-"));
  }

  void crashOfASharedHelperLosesNoWordAndIsNotSharedAgain() {
    const HelperProgram program(helperProgram());
    Fixture computer;
    Fixture microphone;
    computer.start({sharedToy(program), builtIn()});
    microphone.start({sharedToy(program), builtIn()});
    const auto half = static_cast<std::ptrdiff_t>(music_.size() / 2);
    computer.hear({music_.begin(), music_.begin() + half});
    microphone.hear({music_.begin(), music_.begin() + half});
    QTRY_VERIFY_WITH_TIMEOUT(!computer.drafts.isEmpty() && !microphone.drafts.isEmpty(), 60'000);
    const std::vector<pid_t> first = helpers();
    QCOMPARE(first.size(), 1U);
    kill(first.front(), SIGKILL);
    computer.hear({music_.begin() + half, music_.end()});
    microphone.hear({music_.begin() + half, music_.end()});
    computer.hear(silence(1.2));
    microphone.hear(silence(1.2));
    QTRY_VERIFY_WITH_TIMEOUT(!computer.finals.isEmpty() && !microphone.finals.isEmpty(), 60'000);
    QCOMPARE(helpers().size(), 2U);
    test::await(computer.run->finish());
    test::await(microphone.run->finish());
    for (const Fixture* each : {&computer, &microphone}) {
      QCOMPARE(each->finals, QStringList(musicText_));
      QVERIFY(each->failed.isEmpty());
      QCOMPARE(each->ends, QStringList("-"));
    }
  }

  void builtInRecognizerGoesOnWhenTheHelperIsKilledRepeatedly() {
    Fixture f;
    f.start({toy(), builtIn()});
    f.hear(music_ + silence(1.2));
    QTRY_COMPARE_WITH_TIMEOUT(f.finals, QStringList(musicText_), 60'000);
    VERIFY_SOON(([&] {
      if (!f.failed.isEmpty()) return true;
      for (const pid_t helper : helpers()) kill(helper, SIGKILL);
      f.hear(silence(0.1));
      return false;
    })());
    QCOMPARE(f.failed, QStringList("toy"));
    f.hear(he_ + silence(1.5));
    QTRY_VERIFY_WITH_TIMEOUT(f.finals.size() > 1, 60'000);
    QVERIFY2(f.finals[1].startsWith("He was not"), qPrintable(f.finals[1]));
    QVERIFY2(f.notices.contains("“Toy” stopped repeatedly. Captions continue with “Built-in”. "
                                "Captions have no punctuation, because a file of Velun is missing "
                                "or damaged. Install Velun again."),
             qPrintable(f.notices.join(u'|')));
    test::await(f.run->finish());
    QCOMPARE(f.ends, QStringList("-"));
  }

  void builtInRecognizerGoesOnWhenTheModelIsDamaged() {
    RecognizerSettings damaged = transducer();
    damaged.encoder = neuralData("joiner.int8.onnx");
    Fixture f;
    f.hear(he_ + silence(1.5));
    f.start({toy(damaged), builtIn()});
    test::await(f.run->finish());
    QVERIFY(!f.finals.isEmpty());
    QVERIFY2(f.finals[0].startsWith("He was not"), qPrintable(f.finals[0]));
    QVERIFY(f.notices.first().startsWith("“Toy” couldn’t be loaded. Captions continue with"));
    QCOMPARE(f.ends, QStringList("-"));
  }

  void betterModelTakesOverAfterThePhrase() {
    Fixture f;
    f.start({builtIn()});
    f.hear(he_);
    QTRY_VERIFY_WITH_TIMEOUT(!f.drafts.isEmpty(), 60'000);
    f.run->setRecognizers({toy(), builtIn()});
    f.hear(silence(2));
    QTRY_VERIFY_WITH_TIMEOUT(f.briefNotices.contains("Captions now use “Toy”."), 60'000);
    const QString before = f.finals.join(u' ');
    QVERIFY2(before.startsWith("He was not"), qPrintable(before));
    f.hear(music_ + silence(1.2) + numbers_);
    test::await(f.run->finish());
    QCOMPARE(f.finals.mid(f.finals.size() - 2),
             QStringList({musicText_, "Five six nine ten eight"}));
    QTRY_COMPARE(helpers().size(), 0U);
  }
};

QTEST_GUILESS_MAIN(RecognizerProcessTest)
#include "recognizer_process_test.moc"
