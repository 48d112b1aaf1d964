// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_audio_hardware.h"

#include <cerrno>
#include <utility>

namespace velun {

namespace {

constexpr AudioObjectID kTapID = 1;
constexpr AudioObjectID kAggregateID = 2;
constexpr AudioDeviceIOProcID kProcedureID = 1;

// What a server without another setting runs at.
constexpr double kUsualRate = 48'000;
constexpr int kTapChannelCount = 2;

}  // namespace

PipeWireAudioHardware::PipeWireAudioHardware(Clock& clock, std::chrono::milliseconds wakefulness,
                                             AudioInterruptionHandler onInterruption)
    : capture_(PipeWireCapture::Kind::output, clock, wakefulness, std::move(onInterruption)) {}

OSStatus PipeWireAudioHardware::createProcessTap(const TapDescription&, AudioObjectID* tap) {
  const int status = capture_.open();
  if (status == 0) *tap = kTapID;
  return status;
}

OSStatus PipeWireAudioHardware::tapFormat(AudioObjectID tap, AudioFormat* format) {
  if (tap != kTapID || !capture_.isOpen()) return -EINVAL;
  const std::optional<AudioDevice> output = capture_.defaultDevice();
  const double rate = output ? capture_.formatOf(*output).sampleRate : 0;
  *format = {AudioFormat::Sample::float32, rate > 0 ? rate : kUsualRate, kTapChannelCount, true};
  return 0;
}

OSStatus PipeWireAudioHardware::defaultSystemOutputDevice(AudioObjectID* device) {
  const std::optional<AudioDevice> output = capture_.defaultDevice();
  if (!output) return -ENODEV;
  *device = output->id;
  return 0;
}

OSStatus PipeWireAudioHardware::deviceUID(AudioObjectID device, std::optional<QString>* uid) {
  const std::optional<AudioDevice> found = capture_.device(device);
  if (!found) return -ENODEV;
  *uid = found->name.empty() ? std::nullopt : std::optional(QString::fromStdString(found->name));
  return 0;
}

OSStatus PipeWireAudioHardware::createAggregateDevice(const AggregateDeviceDescription& description,
                                                      AudioObjectID* device) {
  if (!capture_.isOpen()) return -ENOTCONN;
  nodeName_ = description.name.toStdString();
  *device = kAggregateID;
  return 0;
}

OSStatus PipeWireAudioHardware::audioDeviceCreateIOProcID(AudioObjectID device, IOBlock block,
                                                          AudioDeviceIOProcID* procedure) {
  if (device != kAggregateID || nodeName_.empty() || !block) return -EINVAL;
  block_ = std::move(block);
  *procedure = kProcedureID;
  return 0;
}

OSStatus PipeWireAudioHardware::audioDeviceStart(AudioObjectID device,
                                                 AudioDeviceIOProcID procedure) {
  if (!hasProcedure(device, procedure)) return -EINVAL;
  return capture_.start(nodeName_, block_);
}

OSStatus PipeWireAudioHardware::audioDeviceStop(AudioObjectID device,
                                                AudioDeviceIOProcID procedure) {
  if (!hasProcedure(device, procedure)) return -EINVAL;
  capture_.stop();
  return 0;
}

OSStatus PipeWireAudioHardware::audioDeviceDestroyIOProcID(AudioObjectID device,
                                                           AudioDeviceIOProcID procedure) {
  if (!hasProcedure(device, procedure)) return -EINVAL;
  capture_.stop();
  block_ = nullptr;
  return 0;
}

OSStatus PipeWireAudioHardware::destroyAggregateDevice(AudioObjectID device) {
  if (device != kAggregateID || nodeName_.empty()) return -EINVAL;
  capture_.stop();
  nodeName_.clear();
  return 0;
}

OSStatus PipeWireAudioHardware::destroyProcessTap(AudioObjectID tap) {
  if (tap != kTapID || !capture_.isOpen()) return -EINVAL;
  capture_.close();
  return 0;
}

bool PipeWireAudioHardware::hasProcedure(AudioObjectID device,
                                         AudioDeviceIOProcID procedure) const {
  return device == kAggregateID && procedure == kProcedureID && block_;
}

}  // namespace velun
