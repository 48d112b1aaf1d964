// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>

namespace velun {

/// The colours of the caption panel's surfaces and outlines. Texts, symbols and focus rings are the
/// same on both kinds (`CaptionAppearance`): it is what they stand on that gives them contrast.
struct CaptionColors {
  /// The panel, where nothing behind it may show through.
  QColor panel{18, 18, 21};
  /// Around the panel and around what stands over the text: white at 0.08.
  QColor edge{255, 255, 255, 20};
  /// Between the header and the text: white at 0.06.
  QColor hairline{255, 255, 255, 15};
  /// Around the header's buttons.
  QColor buttonEdge{255, 255, 255, 0};
  /// What stands over the text, and the same under the pointer.
  QColor raised{44, 44, 50, 240};
  QColor raisedHover{66, 66, 74, 245};
  QColor menu{38, 38, 42};
  /// Around a menu and between its parts.
  QColor menuEdge{255, 255, 255, 28};
  QColor menuSelection{61, 110, 168};
  /// Around the item under the pointer.
  QColor menuSelectionEdge{255, 255, 255, 0};

  /// For users who ask for higher contrast: texts have 7:1, outlines 3:1 and more.
  static CaptionColors highContrast();

  bool operator==(const CaptionColors&) const = default;
};

}  // namespace velun
