// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

namespace velun {

/// The colours of the caption panel's surfaces and outlines, with ordinary or high contrast. Texts,
/// symbols and focus rings have the same colours in both (`CaptionAppearance`).
struct CaptionColors {
  /// Behind the panel's controls where the background of its style is too light for them.
  QColor panel{18, 18, 21};
  /// Around the panel and around controls over the text: white at 0.08.
  QColor edge{255, 255, 255, 20};
  /// Between the header and the text: white at 0.06.
  QColor hairline{255, 255, 255, 15};
  /// Around the header's buttons.
  QColor buttonEdge{255, 255, 255, 0};
  /// Controls over the text, and the same under the pointer.
  QColor raised{44, 44, 50, 240};
  QColor raisedHover{66, 66, 74, 245};
  QColor menu{38, 38, 42};
  /// Around a menu and between its parts.
  QColor menuEdge{255, 255, 255, 28};
  QColor menuSelection{61, 110, 168};
  /// Around the item under the pointer.
  QColor menuSelectionEdge{255, 255, 255, 0};

  /// Colours with at least 7:1 for texts and 3:1 for outlines.
  static CaptionColors highContrast();

  bool operator==(const CaptionColors&) const = default;
};

}  // namespace velun
