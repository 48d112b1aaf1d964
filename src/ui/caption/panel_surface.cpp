// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/panel_surface.h"

#include "ui/caption/text_halo.h"
#include "ui/caption/transcript_formats.h"

#include <algorithm>
#include <QPainter>

namespace velun {

namespace {

constexpr double kOpacityOverBlur = 0.78;
constexpr double kOpacityWithoutBlur = 0.90;
// The least that WCAG 2 asks of small text.
constexpr double kMinContrast = 4.5;
constexpr QColor kDarkEdge(0, 0, 0, 40);

/// What is seen of a colour in front of another.
QColor over(const QColor& front, double opacity, const QColor& back) {
  const auto mix = [opacity](int a, int b) {
    return qRound(a * opacity + b * (1 - opacity));
  };
  return QColor(mix(front.red(), back.red()), mix(front.green(), back.green()),
                mix(front.blue(), back.blue()));
}

double leastOpacity(const PanelStyle& style) {
  return style.opacity.value_or(kOpacityOverBlur);
}

/// The contrast of a text that may be translucent, on the worse of two backgrounds.
double contrastOf(const QColor& text, const PanelStyle& style) {
  double lowest = 21;
  for (const QColor& behind : {QColor(Qt::black), QColor(Qt::white)}) {
    const QColor background = over(style.background, leastOpacity(style), behind);
    lowest = std::min(lowest, contrastRatio(over(text, text.alphaF(), background), background));
  }
  // Letters with an outline are seen against it.
  if (style.edge != TextEdge::outline) return lowest;
  return std::max(lowest, contrastRatio(text, haloColor(text)));
}

}  // namespace

QColor panelFill(const PanelStyle& style, bool blurs) {
  QColor fill = style.background;
  fill.setAlphaF(
      static_cast<float>(style.opacity.value_or(blurs ? kOpacityOverBlur : kOpacityWithoutBlur)));
  return fill;
}

void paintPanelSurface(QPainter& painter, const QRectF& rect, double corner, const QColor& fill,
                       const QColor& edge) {
  if (fill.alpha() == 0) return;
  painter.setPen(Qt::NoPen);
  painter.setBrush(fill);
  painter.drawRoundedRect(rect, corner, corner);
  const bool isLight = contrastRatio(fill, Qt::black) > contrastRatio(fill, Qt::white);
  painter.setPen(isLight ? kDarkEdge : edge);
  painter.setBrush(Qt::NoBrush);
  const double inner = std::max(corner - 0.5, 0.0);
  painter.drawRoundedRect(rect.adjusted(0.5, 0.5, -0.5, -0.5), inner, inner);
}

bool needsControlSurface(const PanelStyle& style) {
  const QColor worst = over(style.background, leastOpacity(style), Qt::white);
  return contrastRatio(worst, Qt::white) < kMinContrast;
}

PanelStyle highContrastStyle(PanelStyle style) {
  style.text = Qt::white;
  style.edge = TextEdge::none;
  style.background = Qt::black;
  style.opacity = 1;
  style.translation.reset();
  return style;
}

double lowestContrast(const PanelStyle& style) {
  return std::min(contrastOf(style.text, style), contrastOf(dimmedTranslation(style), style));
}

}  // namespace velun
