// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/text_size.h"

#include <algorithm>
#include <array>

namespace velun {

namespace {

constexpr std::array kSizes = {kMinTextSize, 10.0,        11.0, 12.0, 13.0, 14.0, kDefaultTextSize,
                               18.0,         20.0,        22.0, 24.0, 27.0, 30.0, 34.0,
                               38.0,         43.0,        48.0, 54.0, 60.0, 68.0, 76.0,
                               86.0,         kMaxTextSize};

}  // namespace

double steppedTextSize(double size, int steps) {
  for (; steps > 0; --steps) {
    const auto* next = std::ranges::upper_bound(kSizes, size);
    size = next == kSizes.end() ? kMaxTextSize : *next;
  }
  for (; steps < 0; ++steps) {
    const auto* next = std::ranges::lower_bound(kSizes, size);
    size = next == kSizes.begin() ? kMinTextSize : *(next - 1);
  }
  return size;
}

}  // namespace velun
