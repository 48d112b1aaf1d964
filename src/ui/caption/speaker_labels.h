// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/line.h"
#include "ui/caption/line_label.h"

#include <QHash>
#include <QString>
#include <vector>

namespace velun {

/// The names of a session's speakers before their lines. Each speaker has a colour, by the order of
/// the first lines.
class SpeakerLabels {
 public:
  /// `isOnDark`: the colours are for light text on a dark ground.
  SpeakerLabels(const std::vector<Line>& lines, bool isOnDark);

  /// No name if the line's speaker is unknown.
  LineLabel labelOf(const Line& line) const;

 private:
  /// The places of the speakers in the order of their first lines.
  QHash<QString, qsizetype> places_;
  bool isOnDark_;
};

}  // namespace velun
