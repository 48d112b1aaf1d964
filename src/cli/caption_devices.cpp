// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/caption_devices.h"

#include "audio/audio_input_kind.h"
#include "language/localization.h"
#include "platform/foundation/failure.h"

#include <algorithm>
#include <QEventLoop>

namespace velun {

std::vector<AudioTarget> currentDevices(AudioPlatform& audio, Clock& clock) {
  constexpr std::chrono::milliseconds kTimeout(2000);
  const auto targets = audio.followTargets();
  QEventLoop loop;
  QObject::connect(targets.get(), &AudioTargets::changed, &loop, &QEventLoop::quit);
  const auto timeout = clock.callAfter(kTimeout, [&loop] { loop.quit(); });
  if (targets->list().empty()) loop.exec();
  return targets->list();
}

AudioTarget deviceNamed(const QString& wanted, AudioInput input,
                        const std::vector<AudioTarget>& devices) {
  AudioTarget target;
  target.kind = deviceKind(input);
  if (wanted.isEmpty()) return target;
  const auto found = std::ranges::find_if(devices, [&](const AudioTarget& device) {
    return device.kind == target.kind &&
           (device.id == wanted || device.name.compare(wanted, Qt::CaseInsensitive) == 0);
  });
  if (found != devices.end()) return *found;
  throw Failure((input == AudioInput::microphone
                     ? L("There is no microphone “%1”; --list-devices shows them.",
                         "“%1” 마이크가 없습니다. --list-devices로 볼 수 있습니다.")
                     : L("There is no output “%1”; --list-devices shows them.",
                         "“%1” 출력 장치가 없습니다. --list-devices로 볼 수 있습니다."))
                    .arg(wanted));
}

QString deviceList(const std::vector<AudioTarget>& devices) {
  QString list;
  for (const AudioTarget& device : devices) {
    const QString kind =
        device.isProgram() ? QStringLiteral("program") : rawValue(inputOf(device.kind));
    list += kind + u'\t' + device.id + u'\t' + device.name + u'\n';
  }
  return list;
}

}  // namespace velun
