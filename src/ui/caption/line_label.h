// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <QColor>
#include <QString>

namespace velun {

struct Line;

/// A name before the text of a line, in a colour of its own. No label if `name` is empty.
struct LineLabel {
  QString name;
  QColor color;
  /// Shown under the pointer; may be empty.
  QString help = {};

  bool operator==(const LineLabel&) const = default;
};

/// Gives each line its label; null gives none. What it reads must outlive the view that it was
/// passed to. If it gives another label to lines that are shown, report a change of all lines.
using LineLabeller = std::function<LineLabel(const Line&)>;

}  // namespace velun
