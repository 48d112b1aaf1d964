// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/audio_source.h"
#include "platform/audio/audio_hardware.h"

#include <memory>
#include <QString>

namespace velun {

/// Everything that the computer plays, through a tap that is attached to a private device. One
/// object is started once; the next run takes a new one, with fresh ids.
class SystemAudio final : public AudioSource {
 public:
  /// Buffers arrive on the hardware's serial "SystemAudio" thread.
  explicit SystemAudio(std::unique_ptr<AudioHardware> hardware);

  /// Throws a `Failure` that names the step and its status. What was made before that step stays
  /// recorded for `stop`.
  void start(Handler handler) override;
  void stop() override;

  /// What exists now; 0 is none.
  AudioObjectID tapID() const { return tapID_; }
  AudioObjectID aggID() const { return aggID_; }
  AudioDeviceIOProcID procID() const { return procID_; }

 private:
  /// Returns the tap's UUID.
  QString createTap();
  void checkTapFormat();
  QString outputDeviceUID();
  void createAggregateDevice(const QString& outputUID, const QString& tapUID);

  std::unique_ptr<AudioHardware> hardware_;
  AudioObjectID tapID_ = 0;
  AudioObjectID aggID_ = 0;
  AudioDeviceIOProcID procID_ = 0;
};

}  // namespace velun
