// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/transcript_formats.h"

#include "ui/caption/text_halo.h"

#include <algorithm>
#include <cmath>
#include <QGuiApplication>
#include <QPalette>
#include <QTextLayout>

namespace velun {

namespace {

constexpr double kSmallSystemFontSize = 11.0;
constexpr double kLineSpacing = 0.15;
constexpr double kParagraphSpacing = 0.35;
// How much more space there is between paragraphs than between lines.
constexpr double kMoreBetweenParagraphs = 0.2;
// Opacities on the panel and on the lighter surfaces of other windows.
constexpr float kCaptionSecondary = 0.65F;
constexpr float kLabelSecondary = 0.72F;
// A typographic point is 1/72 inch; a point of the interface is 1/96.
constexpr double kTypographicPoints = 72.0 / 96.0;

/// The height of a line that mixes scripts, whose fonts differ in height.
double lineHeight(const QFont& font) {
  QTextLayout layout(QStringLiteral("Ág 가한"), font);
  layout.beginLayout();
  const QTextLine line = layout.createLine();
  layout.endLayout();
  return line.height();
}

QTextCharFormat format(const QFont& font, const QColor& color) {
  QTextCharFormat format;
  format.setFont(font);
  format.setForeground(color);
  return format;
}

}  // namespace

QFont systemFont(double size) {
  QFont font = QGuiApplication::font();
  font.setPointSizeF(size * kTypographicPoints);
  return font;
}

QFont captionFont(const PanelStyle& style, double size) {
  QFont font = systemFont(size);
  if (!style.fontFamily.isEmpty()) font.setFamilies({style.fontFamily});
  if (style.fontWeight != 0) font.setWeight(static_cast<QFont::Weight>(style.fontWeight));
  return font;
}

int linePitch(const PanelStyle& style, double textSize) {
  // Asked for with every draft, and nearly always for the same font.
  static QFont measured;
  static double height = 0;
  const QFont font = captionFont(style, textSize * std::max(style.translationRatio, 1.0));
  if (height == 0 || font != measured) {
    measured = font;
    height = lineHeight(font);
  }
  return static_cast<int>(std::ceil(height + textSize * style.lineSpacing));
}

QColor dimmedTranslation(const PanelStyle& style) {
  if (style.translation) return *style.translation;
  QColor dimmed = style.text;
  if (style.edge == TextEdge::none) {
    dimmed.setAlphaF(kCaptionSecondary);
    return dimmed;
  }
  // The outline would show through translucent letters.
  const QColor behind = haloColor(style.text);
  const auto mix = [](float front, float back) {
    return front * kCaptionSecondary + back * (1 - kCaptionSecondary);
  };
  return QColor::fromRgbF(mix(dimmed.redF(), behind.redF()), mix(dimmed.greenF(), behind.greenF()),
                          mix(dimmed.blueF(), behind.blueF()));
}

TranscriptFormats::TranscriptFormats(const TranscriptInputs& inputs, const QPalette& palette) {
  if (inputs.captionStyle) {
    setCaptionFormats(inputs);
    return;
  }
  const QColor primary = palette.color(QPalette::Active, QPalette::Text);
  QColor secondary = primary;
  secondary.setAlphaF(kLabelSecondary);
  const bool dimmed = inputs.content == TranscriptContent::both;
  const QFont font = systemFont(inputs.fontSize);
  const QTextCharFormat body = format(font, primary);
  chars_ = {body, format(systemFont(kSmallSystemFontSize), secondary),
            format(font, dimmed ? secondary : primary), body};
  block_.setLineHeight(inputs.fontSize * kLineSpacing, QTextBlockFormat::LineDistanceHeight);
  block_.setBottomMargin(inputs.fontSize * kParagraphSpacing);
}

void TranscriptFormats::setCaptionFormats(const TranscriptInputs& inputs) {
  const PanelStyle& style = inputs.style;
  QColor secondary = style.text;
  secondary.setAlphaF(kCaptionSecondary);
  const bool dimmed = inputs.content == TranscriptContent::both;
  const QColor translation =
      dimmed ? dimmedTranslation(style) : style.translation.value_or(style.text);
  const double translationSize = inputs.fontSize * style.translationRatio;
  const QTextCharFormat body = format(captionFont(style, inputs.fontSize), style.text);
  chars_ = {body, format(captionFont(style, kSmallSystemFontSize), secondary),
            format(captionFont(style, translationSize), translation), body};
  if (inputs.wholeLines) {
    block_.setLineHeight(linePitch(style, inputs.fontSize), QTextBlockFormat::FixedHeight);
    return;
  }
  block_.setLineHeight(inputs.fontSize * style.lineSpacing, QTextBlockFormat::LineDistanceHeight);
  block_.setBottomMargin(inputs.fontSize *
                         std::max(kParagraphSpacing, style.lineSpacing + kMoreBetweenParagraphs));
}

const QTextCharFormat& TranscriptFormats::charFormat(TranscriptStyle style) const {
  return chars_[static_cast<std::size_t>(style)];
}

QTextCharFormat TranscriptFormats::charFormat(const TranscriptParagraph& paragraph) const {
  QTextCharFormat format = charFormat(paragraph.style);
  if (!paragraph.pendingLabel.isEmpty()) {
    format.setProperty(pendingAttribute, paragraph.pendingLabel);
  }
  return format;
}

QTextCharFormat TranscriptFormats::labelFormat(const TranscriptParagraph& paragraph) const {
  QTextCharFormat format = charFormat(paragraph.style);
  format.setForeground(paragraph.labelColor);
  format.setFontWeight(QFont::Bold);
  if (!paragraph.labelHelp.isEmpty()) format.setToolTip(paragraph.labelHelp);
  return format;
}

}  // namespace velun
