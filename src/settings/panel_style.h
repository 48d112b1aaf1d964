// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <QColor>
#include <QString>

namespace velun {

/// What separates letters from a background that may be of any colour.
enum class TextEdge { none, outline, shadow };

/// Which of two texts of a line stands first.
enum class VoiceOrder { originalFirst, translationFirst };

/// How the caption panel looks. The default is the calm dark look. Lengths are in points, and
/// colours are opaque.
struct PanelStyle {
  static constexpr double maxLineSpacing = 2;
  static constexpr int maxCorner = 32;
  static constexpr double minTranslationRatio = 0.5;
  static constexpr double maxTranslationRatio = 2;

  /// Empty: the desktop's font.
  QString fontFamily;
  /// From 100 to 900, as `QFont::Weight`; 0: the font's own.
  int fontWeight = 0;
  /// The space between lines, as a part of the text size; from 0 to `maxLineSpacing`.
  double lineSpacing = 0.15;
  QColor text{255, 255, 255};
  TextEdge edge = TextEdge::none;
  QColor background{18, 18, 21};
  /// Of the background, from 0 to 1; nullopt: less where the desktop blurs what is behind it.
  std::optional<double> opacity;
  /// The radius of the panel's corners, from 0 to `maxCorner`.
  int corner = 16;
  /// The colour of translations; nullopt: the text's, dimmed below an original.
  std::optional<QColor> translation;
  /// The size of translations as a part of the text size.
  double translationRatio = 1;
  VoiceOrder order = VoiceOrder::originalFirst;

  bool operator==(const PanelStyle&) const = default;
};

/// The ready sets of a style. Each can be changed and reset by the user.
enum class PanelSet { calm, clearOnDark, yellowOnBlack, blackOnWhite, subtitle };

inline constexpr std::array allPanelSets = {PanelSet::calm, PanelSet::clearOnDark,
                                            PanelSet::yellowOnBlack, PanelSet::blackOnWhite,
                                            PanelSet::subtitle};

/// The style of a set that nobody has changed.
PanelStyle standardStyle(PanelSet set);

/// The name of a set for users, in the interface language.
QString title(PanelSet set);
/// The name of a set in the preferences.
QString rawValue(PanelSet set);
std::optional<PanelSet> panelSetFromRawValue(const QString& value);

/// The values of `style` that differ from `standard`, as the text of a JSON object; empty if none
/// does.
QString encodeStyle(const PanelStyle& style, const PanelStyle& standard);

/// `standard` with the values of a text made by `encodeStyle`. Values that are unknown, of another
/// type or out of range are ignored.
PanelStyle decodeStyle(const QString& text, const PanelStyle& standard);

/// The contrast of two opaque colours from 1 to 21, by the formula of WCAG 2.
double contrastRatio(const QColor& a, const QColor& b);

}  // namespace velun
