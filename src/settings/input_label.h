// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/audio_input.h"

#include <QColor>
#include <QString>

namespace velun {

/// How the lines of one input are marked while both are captioned.
struct InputLabel {
  /// Empty: `defaultInputName`.
  QString name;
  QColor color;

  bool operator==(const InputLabel&) const = default;
};

/// "Me" for the microphone and "Computer" for the computer, in the interface language.
QString defaultInputName(AudioInput input);

/// A colour that can be read on the panel's usual background.
QColor defaultInputColor(AudioInput input);

/// `color`, or the nearest lighter or darker one with a contrast of at least 4.5 to `background`.
QColor readableOn(const QColor& background, const QColor& color);

}  // namespace velun
