// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace velun {

/// Another style with lines in the colour of the text around its controls, and thicker ones in the
/// colour of what is selected around the one that has the keyboard.
class OutliningStyle final : public QProxyStyle {
  Q_OBJECT

 public:
  /// `styleName` is that of a style that the toolkit can make.
  explicit OutliningStyle(const QString& styleName) : QProxyStyle(styleName) {}

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                          QPainter* painter, const QWidget* widget) const override;
};

}  // namespace velun
