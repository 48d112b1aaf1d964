// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/built_in/built_in_recognizer_provider.h"
#include "platform/speech/sound_clip.h"

#include <QFileInfo>

namespace velun::test {

/// The built-in recognizer as it was built.
inline BuiltInFiles builtInFiles() {
  return BuiltInFiles::installed(QFileInfo(QStringLiteral(VELUN_RECOGNIZER)).path());
}

/// A clip of read speech (`readAloud`).
inline std::vector<float> clip(const QString& number) {
  return clipSamples(readAloud(number));
}

}  // namespace velun::test
