// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/audio_input.h"

#include "language/localization.h"

namespace velun {

QString rawValue(AudioInput input) {
  return input == AudioInput::microphone ? QStringLiteral("microphone")
                                         : QStringLiteral("computer");
}

QString title(AudioInput input) {
  return input == AudioInput::microphone ? L("Microphone", "마이크")
                                         : L("Computer Audio", "컴퓨터 오디오");
}

}  // namespace velun
