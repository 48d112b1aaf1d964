// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_audio_platform.h"
#include "platform/foundation/system_clock.h"
#include "support/await.h"
#include "support/playback_stream.h"
#include "support/private_pipewire.h"
#include "support/recorder.h"
#include "support/suite.h"

#include <QDir>

using namespace velun;
using namespace velun::test;

namespace {

qsizetype entriesOf(const QString& folder) {
  return QDir(folder).entryList(QDir::NoDotAndDotDot | QDir::AllEntries | QDir::System).size();
}

qsizetype descriptorCount() {
  return entriesOf("/proc/self/fd");
}
qsizetype threadCount() {
  return entriesOf("/proc/self/task");
}

}  // namespace

class PipeWireEnduranceTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void initTestCase() {
    QVERIFY(server_.start());
    QVERIFY(server_.addSink("speakers"));
    QVERIFY(server_.awaitDefaultSink("speakers"));
  }

  void aThousandRunsLeaveNothingBehind() {
    Recorder recorder;
    run(recorder, 0);
    const qsizetype descriptors = descriptorCount();
    const qsizetype threads = threadCount();
    auto player = PlaybackStream::play("", 1000);
    for (int i = 0; i < 1000; ++i) run(recorder, i);
    player.reset();
    // The PipeWire library sometimes leaks the descriptor of a buffer that arrives while its stream
    // is destroyed; a leak of ours would show a thousand times.
    VERIFY_SOON(threadCount() == threads);
    QVERIFY2(descriptorCount() <= descriptors + 50,
             qPrintable(QStringLiteral("%1 after %2").arg(descriptorCount()).arg(descriptors)));
    VERIFY_SOON(PrivatePipeWire::node("Velun Tap").isEmpty());

    player = PlaybackStream::play("", 1000);
    const auto source = platform_.makeSource({});
    recorder.clear();
    await(source->start(recorder.handler()));
    VERIFY_SOON(std::abs(recorder.amplitudeAt(1000, 1'600) - 0.5) < 0.01);
  }

 private:
  /// Stopped at different moments: before, while and after the stream is made and linked.
  void run(Recorder& recorder, int number) {
    const auto source = platform_.makeSource({});
    QCoro::Task<> starting = source->start(recorder.handler());
    if (number % 4 == 1) return source->stop();
    await(std::move(starting));
    if (number % 50 == 2) {
      const std::size_t before = recorder.bufferCount();
      VERIFY_SOON(recorder.bufferCount() > before);
    }
    source->stop();
  }

  PrivatePipeWire server_;
  SystemClock clock_;
  PipeWireAudioPlatform platform_{clock_};
};

QTEST_GUILESS_MAIN(PipeWireEnduranceTest)
#include "pipewire_endurance_test.moc"
