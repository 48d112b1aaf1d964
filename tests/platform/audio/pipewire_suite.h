// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/linux/pipewire_audio_platform.h"
#include "support/manual_clock.h"
#include "support/private_pipewire.h"
#include "support/recorder.h"
#include "support/suite.h"

namespace velun::test {

/// Captures from a private PipeWire with two outputs, of which "speakers" is the default one. The
/// clock stands still unless it is advanced, so that nothing depends on the speed of the machine.
class PipeWireSuite : public Suite {
  Q_OBJECT

 protected:
  /// A source whose signals are written to `reports_`.
  std::unique_ptr<AudioSource> makeSource(PipeWireAudioPlatform& platform,
                                          const AudioTarget& target) {
    auto source = platform.makeSource(target);
    for (const auto& [signal, report] : {std::pair(&AudioSource::interrupted, "interrupted"),
                                         std::pair(&AudioSource::resumed, "resumed"),
                                         std::pair(&AudioSource::deviceMissing, "missing")}) {
      connect(source.get(), signal, this, [this, report] { reports_ << report; });
    }
    connect(source.get(), &AudioSource::failed, this,
            [this](const QString& message) { reports_ << message; });
    return source;
  }

  /// Advances the clock, because the source links a stream again that the session manager has not.
  bool hearsInTime(double frequency, double other) {
    clock_.advance(std::chrono::milliseconds(20));
    return recorder_.hearsOnly(frequency, other);
  }

  Recorder recorder_;
  ManualClock clock_;
  PipeWireAudioPlatform platform_{clock_};
  std::unique_ptr<PrivatePipeWire> server_;
  QStringList reports_;
  std::unique_ptr<AudioSource> source_;

 protected Q_SLOTS:
  void init() {
    Suite::init();
    server_ = std::make_unique<PrivatePipeWire>();
    QVERIFY(server_->start());
    QVERIFY(server_->addSink("speakers"));
    QVERIFY(server_->addSink("headphones"));
    QVERIFY(server_->setDefaultSink("speakers"));
    reports_.clear();
    recorder_.clear();
  }

  void cleanup() {
    source_.reset();
    server_.reset();
  }
};

}  // namespace velun::test
