// SPDX-License-Identifier: GPL-3.0-or-later
// A helper program that decodes at half of real time: how far captions are behind, and how long a
// stop takes.
#include "measure.h"
#include "platform/speech/neural_fixture.h"
#include "support/throttled_captions.h"

#include <QCoreApplication>
#include <QEventLoop>

using namespace velun;

namespace {

constexpr double kSlowness = 2;
constexpr double kSeconds = 60;

QCoro::Task<> quitAfter(QCoro::Task<> task, QEventLoop* loop) {
  co_await task;
  loop->quit();
}

void run(QCoro::Task<> task) {
  QEventLoop loop;
  const QCoro::Task<> waiting = quitAfter(std::move(task), &loop);
  if (!waiting.isReady()) loop.exec();
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication app(argc, argv);
  const std::vector<float> sound = test::operator+(test::sound("h11.wav"), test::silence(0.8));
  test::ThrottledCaptions captions(test::transducer(), kSlowness, sound);
  run(captions.engine.start(QStringLiteral("en_US"), {}));
  captions.startPlaying();
  while (captions.playedSeconds() < kSeconds) {
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  bench::report("helper_backlog_s", captions.longestBacklog(), "s");
  captions.stopPlaying();
  const double stop = bench::millisecondsOf([&captions] { run(captions.engine.stop()); });
  bench::report("stop_drain_s", stop / 1000, "s");
  return 0;
}
