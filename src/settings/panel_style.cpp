// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/panel_style.h"

#include "language/localization.h"
#include "language/raw_value.h"

#include <algorithm>
#include <cmath>

namespace velun {

namespace {

constexpr QColor kWhite(255, 255, 255);
constexpr QColor kYellow(255, 221, 51);
constexpr QColor kPaleBlue(158, 206, 255);
constexpr QColor kInkBlue(22, 71, 146);
constexpr int kMediumWeight = 500;
constexpr int kSemiboldWeight = 600;

/// Of a component from 0 to 1; the formula of WCAG 2.
double linear(double component) {
  return component <= 0.04045 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

}  // namespace

PanelStyle standardStyle(PanelSet set) {
  PanelStyle style;
  switch (set) {
    case PanelSet::calm:
      break;
    case PanelSet::clearOnDark:
      style.fontWeight = kMediumWeight;
      style.lineSpacing = 0.3;
      style.background = QColor(10, 12, 16);
      style.opacity = 0.96;
      style.translation = kPaleBlue;
      break;
    case PanelSet::yellowOnBlack:
      style.fontWeight = kMediumWeight;
      style.text = kYellow;
      style.background = Qt::black;
      style.opacity = 1;
      style.translation = kWhite;
      break;
    case PanelSet::blackOnWhite:
      style.text = Qt::black;
      style.background = kWhite;
      style.opacity = 1;
      style.translation = kInkBlue;
      break;
    case PanelSet::subtitle:
      style.fontWeight = kSemiboldWeight;
      style.edge = TextEdge::outline;
      style.background = Qt::black;
      style.opacity = 0;
      style.translation = kYellow;
      break;
  }
  return style;
}

QString title(PanelSet set) {
  switch (set) {
    case PanelSet::calm:
      return L("Calm", "차분하게");
    case PanelSet::clearOnDark:
      return L("Clear on Dark", "어두운 바탕에 또렷하게");
    case PanelSet::yellowOnBlack:
      return L("Yellow on Black", "검은 바탕에 노란 글자");
    case PanelSet::blackOnWhite:
      return L("Black on White", "흰 바탕에 검은 글자");
    case PanelSet::subtitle:
      return L("Subtitle", "영화 자막");
  }
  return {};
}

QString rawValue(PanelSet set) {
  switch (set) {
    case PanelSet::calm:
      return QStringLiteral("calm");
    case PanelSet::clearOnDark:
      return QStringLiteral("clearOnDark");
    case PanelSet::yellowOnBlack:
      return QStringLiteral("yellowOnBlack");
    case PanelSet::blackOnWhite:
      return QStringLiteral("blackOnWhite");
    case PanelSet::subtitle:
      return QStringLiteral("subtitle");
  }
  return {};
}

std::optional<PanelSet> panelSetFromRawValue(const QString& value) {
  return valueFromRaw(allPanelSets, value);
}

double contrastRatio(const QColor& a, const QColor& b) {
  const double first = luminance(a) + 0.05;
  const double second = luminance(b) + 0.05;
  return std::max(first, second) / std::min(first, second);
}

}  // namespace velun
