// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/input_label.h"

#include "language/localization.h"
#include "settings/panel_style.h"

namespace velun {

QString defaultInputName(AudioInput input) {
  return input == AudioInput::microphone ? L("Me", "나") : L("Computer", "컴퓨터");
}

QColor defaultInputColor(AudioInput input) {
  return input == AudioInput::microphone ? QColor(124, 200, 255) : QColor(255, 200, 110);
}

QColor readableOn(const QColor& background, const QColor& color) {
  constexpr double kMinContrast = 4.5;
  constexpr int kSteps = 20;
  const bool isDark = contrastRatio(background, Qt::white) > contrastRatio(background, Qt::black);
  const QColor limit = isDark ? Qt::white : Qt::black;
  const auto mix = [](int from, int to, int step) {
    return from + (to - from) * step / kSteps;
  };
  for (int step = 0; step < kSteps; ++step) {
    const QColor mixed(mix(color.red(), limit.red(), step), mix(color.green(), limit.green(), step),
                       mix(color.blue(), limit.blue(), step));
    if (contrastRatio(background, mixed) >= kMinContrast) return mixed;
  }
  return limit;
}

}  // namespace velun
