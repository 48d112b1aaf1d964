// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/system_audio.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"

#include <QUuid>
#include <utility>

namespace velun {

namespace {

QString freshUUID() {
  return QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper();
}

/// Throws unless `status` is 0; `stage` names the step in the interface language.
void check(OSStatus status, const QString& stage) {
  if (status == 0) return;
  const QString code = QString::number(status);
  throw Failure(L(stage + " failed (" + code + ")", stage + " 실패 (" + code + ")"));
}

bool isReadable(const AudioFormat& format) {
  return format.sampleRate > 0 && format.channelCount > 0;
}

}  // namespace

SystemAudio::SystemAudio(std::unique_ptr<AudioHardware> hardware)
    : hardware_(std::move(hardware)) {}

void SystemAudio::start(Handler handler) {
  const QString tapUID = createTap();
  checkTapFormat();
  const QString outputUID = outputDeviceUID();
  createAggregateDevice(outputUID, tapUID);
  // The output device may change its format while captions run, so each buffer brings its own.
  const auto block = [handler = std::move(handler)](const PcmBuffer& buffer) {
    if (isReadable(buffer.format())) handler(buffer);
  };
  check(hardware_->audioDeviceCreateIOProcID(aggID_, block, &procID_),
        L("IOProc creation", "IOProc 생성"));
  check(hardware_->audioDeviceStart(aggID_, procID_), L("Audio start", "오디오 시작"));
}

void SystemAudio::stop() {
  if (procID_ != 0) {
    hardware_->audioDeviceStop(aggID_, procID_);
    hardware_->audioDeviceDestroyIOProcID(aggID_, procID_);
  }
  if (aggID_ != 0) hardware_->destroyAggregateDevice(aggID_);
  if (tapID_ != 0) hardware_->destroyProcessTap(tapID_);
  tapID_ = 0;
  aggID_ = 0;
  procID_ = 0;
}

QString SystemAudio::createTap() {
  TapDescription description;
  description.uuid = freshUUID();
  description.isMuted = false;
  description.isPrivate = true;
  check(hardware_->createProcessTap(description, &tapID_),
        L("Audio tap creation", "오디오 탭 생성"));
  return description.uuid;
}

void SystemAudio::checkTapFormat() {
  AudioFormat format;
  check(hardware_->tapFormat(tapID_, &format), L("Tap format lookup", "탭 포맷 조회"));
  if (!isReadable(format)) throw Failure(L("Couldn’t read the tap format", "탭 포맷 해석 실패"));
}

QString SystemAudio::outputDeviceUID() {
  AudioObjectID device = 0;
  check(hardware_->defaultSystemOutputDevice(&device), L("Output device lookup", "출력 장치 조회"));
  std::optional<QString> uid;
  check(hardware_->deviceUID(device, &uid), L("Output device UID lookup", "출력 장치 UID 조회"));
  if (!uid) throw Failure(L("No output device UID", "출력 장치 UID 없음"));
  return *uid;
}

void SystemAudio::createAggregateDevice(const QString& outputUID, const QString& tapUID) {
  AggregateDeviceDescription description;
  description.name = "Velun Tap";
  description.uid = freshUUID();
  description.mainDeviceUID = outputUID;
  description.isPrivate = true;
  description.isStacked = false;
  description.tapAutoStarts = true;
  description.subdeviceUIDs = {outputUID};
  description.taps = {{tapUID, true}};
  check(hardware_->createAggregateDevice(description, &aggID_),
        L("Aggregate device creation", "집합 장치 생성"));
}

}  // namespace velun
