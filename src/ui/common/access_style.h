// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace velun {

/// Adapts a style to accessibility preferences and to colours that it is not made for: draws a
/// thick outline in the links' colour around the focused control, outlines around the others where
/// they are wanted, and stops animations.
class AccessStyle final : public QProxyStyle {
  Q_OBJECT

 public:
  /// `soft` outlines have half the strength of the text colour, `strong` ones all of it.
  enum class Outlines { none, soft, strong };

  /// `styleName` is a key of QStyleFactory.
  AccessStyle(const QString& styleName, Outlines outlines, bool reducedMotion)
      : QProxyStyle(styleName), outlines_(outlines), reducedMotion_(reducedMotion) {}

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
  QRect subElementRect(SubElement element, const QStyleOption* option,
                       const QWidget* widget) const override;

 private:
  void drawOutline(QPainter& painter, const QStyleOption& option) const;

  Outlines outlines_;
  bool reducedMotion_;
};

}  // namespace velun
