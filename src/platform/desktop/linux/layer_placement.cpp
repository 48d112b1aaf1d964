// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/layer_placement.h"

#include <algorithm>
#include <tuple>

namespace velun {

qsizetype outputFor(const QRect& window, const QList<QRect>& outputs) {
  // Better means less.
  const auto rank = [&window](const QRect& output) {
    const QRect shown = output & window;
    const qint64 area = shown.isEmpty() ? 0 : qint64{shown.width()} * shown.height();
    return std::tuple(!output.contains(window.center()), -area,
                      (output.center() - window.center()).manhattanLength());
  };
  const auto best = std::ranges::min_element(outputs, {}, rank);
  return best == outputs.end() ? -1 : best - outputs.begin();
}

QMargins marginsOn(const QRect& output, const QRect& window) {
  const QPoint corner = window.topLeft() - output.topLeft();
  return {corner.x(), corner.y(), 0, 0};
}

QRect relativeTo(const QRect& parent, const QRect& popup) {
  return popup.translated(-parent.topLeft());
}

}  // namespace velun
