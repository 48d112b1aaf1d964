// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_hardware.h"

#include <memory>
#include <QHash>
#include <QStringList>

namespace velun::test {

/// An audio hardware that answers as it is told and writes down what was asked. The script
/// outlives the hardware, which a source owns.
struct AudioHardwareScript {
  /// The status that an operation answers with, by its name; 0 for those not named.
  QHash<QString, OSStatus> statuses;
  AudioFormat format{AudioFormat::Sample::float32, 48'000, 2, true};
  std::optional<QString> uid = QString("output");

  /// The names of the operations called, in order, with the ids they were given.
  QStringList calls;
  TapDescription tap;
  AggregateDeviceDescription aggregate;
  AudioHardware::IOBlock block;

  OSStatus record(const QString& name, const QString& arguments = {}) {
    calls << name + arguments;
    return statuses.value(name, 0);
  }
};

class ScriptedAudioHardware : public AudioHardware {
 public:
  static constexpr AudioObjectID tapID = 71;
  static constexpr AudioObjectID outputID = 42;
  static constexpr AudioObjectID aggregateID = 99;
  static constexpr AudioDeviceIOProcID procedureID = 5;

  explicit ScriptedAudioHardware(std::shared_ptr<AudioHardwareScript> script)
      : script_(std::move(script)) {}

  OSStatus createProcessTap(const TapDescription& description, AudioObjectID* tap) override {
    script_->tap = description;
    return give("createProcessTap", {}, tap, tapID);
  }
  OSStatus tapFormat(AudioObjectID tap, AudioFormat* format) override {
    return give("tapFormat", ids(tap), format, script_->format);
  }
  OSStatus defaultSystemOutputDevice(AudioObjectID* device) override {
    return give("defaultSystemOutputDevice", {}, device, outputID);
  }
  OSStatus deviceUID(AudioObjectID device, std::optional<QString>* uid) override {
    return give("deviceUID", ids(device), uid, script_->uid);
  }
  OSStatus createAggregateDevice(const AggregateDeviceDescription& description,
                                 AudioObjectID* device) override {
    script_->aggregate = description;
    return give("createAggregateDevice", {}, device, aggregateID);
  }
  OSStatus audioDeviceCreateIOProcID(AudioObjectID device, IOBlock block,
                                     AudioDeviceIOProcID* procedure) override {
    script_->block = std::move(block);
    return give("audioDeviceCreateIOProcID", ids(device), procedure, procedureID);
  }
  OSStatus audioDeviceStart(AudioObjectID device, AudioDeviceIOProcID procedure) override {
    return script_->record("audioDeviceStart", ids(device, procedure));
  }
  OSStatus audioDeviceStop(AudioObjectID device, AudioDeviceIOProcID procedure) override {
    return script_->record("audioDeviceStop", ids(device, procedure));
  }
  OSStatus audioDeviceDestroyIOProcID(AudioObjectID device,
                                      AudioDeviceIOProcID procedure) override {
    return script_->record("audioDeviceDestroyIOProcID", ids(device, procedure));
  }
  OSStatus destroyAggregateDevice(AudioObjectID device) override {
    return script_->record("destroyAggregateDevice", ids(device));
  }
  OSStatus destroyProcessTap(AudioObjectID tap) override {
    return script_->record("destroyProcessTap", ids(tap));
  }

 private:
  static QString ids(std::uint32_t first) { return QString("(%1)").arg(first); }
  static QString ids(std::uint32_t first, std::uint32_t second) {
    return QString("(%1, %2)").arg(first).arg(second);
  }

  template <typename Value>
  OSStatus give(const QString& name, const QString& arguments, Value* place, const Value& value) {
    const OSStatus status = script_->record(name, arguments);
    if (status == 0) *place = value;
    return status;
  }

  std::shared_ptr<AudioHardwareScript> script_;
};

}  // namespace velun::test
