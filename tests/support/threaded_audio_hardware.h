// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "support/scripted_audio_hardware.h"
#include "support/signals.h"

#include <atomic>
#include <thread>

namespace velun::test {

/// A hardware whose IO block is called on a thread of its own, as often as the machine can.
class ThreadedAudioHardware final : public ScriptedAudioHardware {
 public:
  explicit ThreadedAudioHardware(std::shared_ptr<AudioHardwareScript> script)
      : ScriptedAudioHardware(script), script_(std::move(script)) {}

  OSStatus audioDeviceStart(AudioObjectID device, AudioDeviceIOProcID procedure) override {
    isRunning_ = true;
    thread_ = std::thread([this] {
      const PcmBuffer buffer = toneBuffer(script_->format, 1250, 0.5F, 1024);
      while (isRunning_) script_->block(buffer);
    });
    return ScriptedAudioHardware::audioDeviceStart(device, procedure);
  }
  OSStatus audioDeviceStop(AudioObjectID device, AudioDeviceIOProcID procedure) override {
    isRunning_ = false;
    thread_.join();
    return ScriptedAudioHardware::audioDeviceStop(device, procedure);
  }

 private:
  std::shared_ptr<AudioHardwareScript> script_;
  std::atomic<bool> isRunning_ = false;
  std::thread thread_;
};

}  // namespace velun::test
