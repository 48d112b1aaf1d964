// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/pcm_buffer.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <QString>
#include <vector>

namespace velun {

/// Status of a hardware operation: 0 is success, else a negative errno.
using OSStatus = std::int32_t;

/// Identifies a tap or a device; 0 is none.
using AudioObjectID = std::uint32_t;

/// Identifies an IO procedure; 0 is none.
using AudioDeviceIOProcID = std::uint32_t;

/// What a process tap listens to: everything that the computer plays.
struct TapDescription {
  /// Names the tap in an aggregate device; fresh for each tap.
  QString uuid;
  /// Whether the tapped sound is no longer heard.
  bool isMuted = false;
  /// Whether other programs are not offered the tap.
  bool isPrivate = true;
};

/// A private device made of an output device and a tap of it.
struct AggregateDeviceDescription {
  QString name;
  /// Fresh for each device.
  QString uid;
  /// The UID of the output device that sets the pace.
  QString mainDeviceUID;
  bool isPrivate = true;
  bool isStacked = false;
  bool tapAutoStarts = true;
  std::vector<QString> subdeviceUIDs;
  struct Tap {
    QString uid;
    bool compensatesDrift = true;
    bool operator==(const Tap&) const = default;
  };
  std::vector<Tap> taps;
};

/// The operations of the sound system that capturing the computer's own sound stands on, with
/// statuses in place of exceptions. Called on the main thread; an IO block is called on the
/// capture thread ("SystemAudio"), one call at a time, between `audioDeviceStart` and the return
/// of `audioDeviceStop`.
class AudioHardware {
 public:
  /// Takes one captured buffer, valid during the call.
  using IOBlock = std::function<void(const PcmBuffer&)>;

  virtual ~AudioHardware() = default;

  virtual OSStatus createProcessTap(const TapDescription& description, AudioObjectID* tap) = 0;
  /// A stream format with a rate or channel count of 0 cannot be read as a format.
  virtual OSStatus tapFormat(AudioObjectID tap, AudioFormat* format) = 0;
  virtual OSStatus defaultSystemOutputDevice(AudioObjectID* device) = 0;
  /// None in `uid` although the status is 0: the device has no UID.
  virtual OSStatus deviceUID(AudioObjectID device, std::optional<QString>* uid) = 0;
  virtual OSStatus createAggregateDevice(const AggregateDeviceDescription& description,
                                         AudioObjectID* device) = 0;
  virtual OSStatus audioDeviceCreateIOProcID(AudioObjectID device, IOBlock block,
                                             AudioDeviceIOProcID* procedure) = 0;
  virtual OSStatus audioDeviceStart(AudioObjectID device, AudioDeviceIOProcID procedure) = 0;
  virtual OSStatus audioDeviceStop(AudioObjectID device, AudioDeviceIOProcID procedure) = 0;
  virtual OSStatus audioDeviceDestroyIOProcID(AudioObjectID device,
                                              AudioDeviceIOProcID procedure) = 0;
  virtual OSStatus destroyAggregateDevice(AudioObjectID device) = 0;
  virtual OSStatus destroyProcessTap(AudioObjectID tap) = 0;
};

}  // namespace velun
