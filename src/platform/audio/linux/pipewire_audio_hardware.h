// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_hardware.h"
#include "platform/audio/linux/pipewire_capture.h"

#include <string>

namespace velun {

/// The computer's own sound through PipeWire. The tap is a stereo capture of the default output's
/// monitor; the aggregate device is the private stream node that it comes in by. One of each.
class PipeWireAudioHardware final : public AudioHardware {
 public:
  PipeWireAudioHardware(Clock& clock, std::chrono::milliseconds wakefulness,
                        AudioInterruptionHandler onInterruption);

  OSStatus createProcessTap(const TapDescription& description, AudioObjectID* tap) override;
  OSStatus tapFormat(AudioObjectID tap, AudioFormat* format) override;
  OSStatus defaultSystemOutputDevice(AudioObjectID* device) override;
  OSStatus deviceUID(AudioObjectID device, std::optional<QString>* uid) override;
  OSStatus createAggregateDevice(const AggregateDeviceDescription& description,
                                 AudioObjectID* device) override;
  OSStatus audioDeviceCreateIOProcID(AudioObjectID device, IOBlock block,
                                     AudioDeviceIOProcID* procedure) override;
  OSStatus audioDeviceStart(AudioObjectID device, AudioDeviceIOProcID procedure) override;
  OSStatus audioDeviceStop(AudioObjectID device, AudioDeviceIOProcID procedure) override;
  OSStatus audioDeviceDestroyIOProcID(AudioObjectID device, AudioDeviceIOProcID procedure) override;
  OSStatus destroyAggregateDevice(AudioObjectID device) override;
  OSStatus destroyProcessTap(AudioObjectID tap) override;

 private:
  bool hasProcedure(AudioObjectID device, AudioDeviceIOProcID procedure) const;

  PipeWireCapture capture_;
  std::string nodeName_;
  IOBlock block_;
};

}  // namespace velun
