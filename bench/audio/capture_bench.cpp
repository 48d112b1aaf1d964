// SPDX-License-Identifier: GPL-3.0-or-later
// Measures capturing the computer's sound from a private PipeWire: processor use, delay and
// wake-ups.
#include "audio/audio_feeder.h"
#include "platform/audio/linux/pipewire_audio_platform.h"
#include "platform/foundation/system_clock.h"
#include "support/await.h"
#include "support/playback_stream.h"
#include "support/private_pipewire.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <mutex>
#include <QCoreApplication>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>
#include <vector>

using namespace velun;
using namespace velun::test;

namespace {

const PlaybackFormat stereo;
constexpr int measuredSeconds = 5;

void wait(int seconds) {
  QEventLoop loop;
  QTimer::singleShot(seconds * 1000, &loop, &QEventLoop::quit);
  loop.exec();
}

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

double processSeconds() {
  timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

/// The number of times that the threads of this process were woken.
long wakeups() {
  long sum = 0;
  const QDir tasks("/proc/self/task");
  for (const QString& task : tasks.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
    QFile status(tasks.filePath(task + "/status"));
    if (!status.open(QFile::ReadOnly)) continue;
    for (const QByteArray& line : status.readAll().split('\n')) {
      if (line.startsWith("voluntary_ctxt_switches:")) sum += line.split('\t').last().toLong();
    }
  }
  return sum;
}

/// The player is a separate process, as on a desktop.
int playUntilKilled() {
  const PlaybackStream player(stereo, {}, PlaybackStream::tone(440, 48'000, 0.25F));
  return QCoreApplication::exec();
}

void measureUse(PipeWireAudioPlatform& platform, const Clock& clock) {
  const auto stream = std::make_shared<SpeechInput>();
  AudioFeeder feeder(stream, clock);
  const auto source = platform.makeSource({});
  await(source->start([&feeder](std::span<const float> samples) { feeder.feed(samples); }));
  QProcess player;
  player.start(QCoreApplication::applicationFilePath(), {"play"});
  wait(2);
  const double startSeconds = processSeconds();
  const long startWakeups = wakeups();
  wait(measuredSeconds);
  const double used = processSeconds() - startSeconds;
  const long woken = wakeups() - startWakeups;
  if (!feeder.hasFedAudio()) qFatal("Nothing was captured");
  std::printf("capture_core_use %.3f %%\n", 100 * used / measuredSeconds);
  std::printf("capture_wakeups_per_s %.1f /s\n", double(woken) / measuredSeconds);
  player.kill();
  player.waitForFinished();
  wait(2);
  const long idleStart = wakeups();
  wait(measuredSeconds);
  std::printf("capture_idle_wakeups_per_s %.1f /s\n",
              double(wakeups() - idleStart) / measuredSeconds);
  source->stop();
}

void measureLatency(PipeWireAudioPlatform& platform) {
  std::atomic<double> played = 0;
  std::mutex mutex;
  std::vector<double> delays;
  const auto source = platform.makeSource({});
  await(source->start([&](std::span<const float> samples) {
    const double start = played;
    if (start == 0 || std::ranges::none_of(samples, [](float s) { return s > 0.2F; })) return;
    played = 0;
    const std::lock_guard lock(mutex);
    delays.push_back(now() - start);
  }));
  {
    const PlaybackStream player(stereo, {},
                                [&, frames = std::size_t(0)](std::span<float> samples) mutable {
                                  std::ranges::fill(samples, 0.0F);
                                  frames += samples.size();
                                  // An odd period, so that impulses meet the server's cycles at all
                                  // phases.
                                  if (frames < 12'345) return;
                                  frames = 0;
                                  std::ranges::fill(samples.first(6), 0.9F);
                                  played = now();
                                });
    wait(measuredSeconds);
  }
  source->stop();
  if (delays.empty()) qFatal("No impulse arrived");
  std::ranges::sort(delays);
  std::printf("capture_latency_ms %.1f ms\n", delays[delays.size() / 2] * 1e3);
}

}  // namespace

int main(int argc, char** argv) {
  QCoreApplication application(argc, argv);
  if (argc > 1) return playUntilKilled();
  const QTemporaryDir folder;
  for (const char* variable : {"XDG_RUNTIME_DIR", "HOME", "XDG_STATE_HOME", "XDG_CONFIG_HOME"}) {
    qputenv(variable, folder.path().toUtf8());
  }
  qunsetenv("DBUS_SESSION_BUS_ADDRESS");
  PrivatePipeWire server;
  if (!server.start() || !server.addSink("speakers") || !server.awaitDefaultSink("speakers")) {
    qFatal("No sound server");
  }
  SystemClock clock;
  PipeWireAudioPlatform platform(clock, std::chrono::seconds(1));
  measureUse(platform, clock);
  measureLatency(platform);
}
