// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace velun {

/// Adapts a style to accessibility preferences: draws outlines in the text colour around controls
/// and a thicker one in the highlight colour around the focused control, and stops animations.
class AccessStyle final : public QProxyStyle {
  Q_OBJECT

 public:
  /// `styleName` is a key of QStyleFactory.
  AccessStyle(const QString& styleName, bool outlines, bool reducedMotion)
      : QProxyStyle(styleName), outlines_(outlines), reducedMotion_(reducedMotion) {}

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;

 private:
  bool outlines_;
  bool reducedMotion_;
};

}  // namespace velun
