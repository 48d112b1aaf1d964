// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/contrast_ratio.h"

#include <algorithm>
#include <cmath>

namespace velun::test {

namespace {

/// The linear value of an sRGB channel, both from 0 to 1.
double linear(double channel) {
  return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

QColor over(const QColor& color, const QColor& background) {
  const float alpha = color.alphaF();
  const auto mixed = [alpha](float above, float below) {
    return above * alpha + below * (1 - alpha);
  };
  return QColor::fromRgbF(mixed(color.redF(), background.redF()),
                          mixed(color.greenF(), background.greenF()),
                          mixed(color.blueF(), background.blueF()));
}

}  // namespace

double contrastRatio(const QColor& color, const QColor& background) {
  const auto [darker, lighter] =
      std::minmax({luminance(over(color, background)), luminance(background)});
  return (lighter + 0.05) / (darker + 0.05);
}

}  // namespace velun::test
