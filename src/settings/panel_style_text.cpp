// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/panel_style.h"

#include <algorithm>
#include <array>
#include <QJsonDocument>
#include <QJsonObject>

namespace velun {

namespace {

constexpr std::array kEdges = {"none", "outline", "shadow"};
constexpr std::array kOrders = {"original", "translation"};
constexpr int kMinWeight = 100;
constexpr int kMaxWeight = 900;
constexpr qsizetype kMaxFamilyLength = 200;

QJsonValue colorValue(const std::optional<QColor>& color) {
  return color ? QJsonValue(color->name()) : QJsonValue();
}

QJsonObject toJson(const PanelStyle& style) {
  return {{"fontFamily", style.fontFamily},
          {"fontWeight", style.fontWeight},
          {"lineSpacing", style.lineSpacing},
          {"textColor", colorValue(style.text)},
          {"edge", QLatin1String(kEdges[static_cast<std::size_t>(style.edge)])},
          {"background", colorValue(style.background)},
          {"opacity", style.opacity ? QJsonValue(*style.opacity) : QJsonValue()},
          {"corner", style.corner},
          {"translationColor", colorValue(style.translation)},
          {"translationRatio", style.translationRatio},
          {"order", QLatin1String(kOrders[static_cast<std::size_t>(style.order)])}};
}

/// The values of a JSON object that are of the right type and in range.
class StyleReader final {
 public:
  explicit StyleReader(QJsonObject object) : object_(std::move(object)) {}

  std::optional<double> number(const char* key, double least, double most) const {
    const double read = value(key).toDouble(least - 1);
    return read >= least && read <= most ? std::optional(read) : std::nullopt;
  }

  std::optional<QColor> color(const char* key) const {
    const QString name = value(key).toString();
    if (!name.startsWith('#') || !QColor::isValidColor(name)) return {};
    const QColor read(name);
    return read.alpha() == 255 ? std::optional(read) : std::nullopt;
  }

  /// The index of the text in `names`.
  template <std::size_t count>
  std::optional<std::size_t> choice(const char* key,
                                    const std::array<const char*, count>& names) const {
    const QString text = value(key).toString();
    for (std::size_t i = 0; i < count; ++i) {
      if (text == QLatin1String(names[i])) return i;
    }
    return {};
  }

  QJsonValue value(const char* key) const { return object_.value(QLatin1String(key)); }

 private:
  QJsonObject object_;
};

}  // namespace

QString encodeStyle(const PanelStyle& style, const PanelStyle& standard) {
  const QJsonObject usual = toJson(standard);
  QJsonObject changed = toJson(style);
  for (const QString& key : changed.keys()) {
    if (changed.value(key) == usual.value(key)) changed.remove(key);
  }
  if (changed.isEmpty()) return {};
  return QString::fromUtf8(QJsonDocument(changed).toJson(QJsonDocument::Compact));
}

PanelStyle decodeStyle(const QString& text, const PanelStyle& standard) {
  const StyleReader reader(QJsonDocument::fromJson(text.toUtf8()).object());
  PanelStyle style = standard;
  style.fontFamily = reader.value("fontFamily").toString(style.fontFamily).left(kMaxFamilyLength);
  if (const auto weight = reader.number("fontWeight", 0, kMaxWeight)) {
    style.fontWeight = *weight == 0 ? 0 : std::max(static_cast<int>(*weight), kMinWeight);
  }
  style.lineSpacing =
      reader.number("lineSpacing", 0, PanelStyle::maxLineSpacing).value_or(style.lineSpacing);
  style.text = reader.color("textColor").value_or(style.text);
  if (const auto edge = reader.choice("edge", kEdges)) style.edge = static_cast<TextEdge>(*edge);
  style.background = reader.color("background").value_or(style.background);
  if (reader.value("opacity").isNull()) style.opacity.reset();
  if (const auto opacity = reader.number("opacity", 0, 1)) style.opacity = opacity;
  style.corner =
      static_cast<int>(reader.number("corner", 0, PanelStyle::maxCorner).value_or(style.corner));
  if (reader.value("translationColor").isNull()) style.translation.reset();
  if (const auto color = reader.color("translationColor")) style.translation = color;
  style.translationRatio = reader
                               .number("translationRatio", PanelStyle::minTranslationRatio,
                                       PanelStyle::maxTranslationRatio)
                               .value_or(style.translationRatio);
  if (const auto order = reader.choice("order", kOrders)) {
    style.order = static_cast<VoiceOrder>(*order);
  }
  return style;
}

}  // namespace velun
