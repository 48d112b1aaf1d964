// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace velun {

/// Another style as users need it: with lines in the colour of the text around its controls, and
/// thicker ones in the colour of what is selected around the one that has the keyboard; without
/// movements.
class AccessStyle final : public QProxyStyle {
  Q_OBJECT

 public:
  /// `styleName` is that of a style that the toolkit can make.
  AccessStyle(const QString& styleName, bool outlines, bool still)
      : QProxyStyle(styleName), outlines_(outlines), still_(still) {}

  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;

 private:
  bool outlines_;
  bool still_;
};

}  // namespace velun
