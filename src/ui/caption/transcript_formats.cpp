// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/transcript_formats.h"

#include <QGuiApplication>
#include <QPalette>

namespace velun {

namespace {

constexpr double kSmallSystemFontSize = 11.0;
constexpr double kLineSpacing = 0.15;
constexpr double kParagraphSpacing = 0.35;
// Opacities on the panel and on the lighter surfaces of other windows.
constexpr float kCaptionSecondary = 0.65F;
constexpr float kLabelSecondary = 0.72F;
// A typographic point is 1/72 inch; a point of the interface is 1/96.
constexpr double kTypographicPoints = 72.0 / 96.0;

QTextCharFormat format(double size, const QColor& color) {
  QTextCharFormat format;
  format.setFont(systemFont(size));
  format.setForeground(color);
  return format;
}

}  // namespace

QFont systemFont(double size) {
  QFont font = QGuiApplication::font();
  font.setPointSizeF(size * kTypographicPoints);
  return font;
}

TranscriptFormats::TranscriptFormats(const TranscriptInputs& inputs, const QPalette& palette) {
  const QColor primary = inputs.captionStyle ? CaptionAppearance::text
                                             : palette.color(QPalette::Active, QPalette::Text);
  QColor secondary = primary;
  secondary.setAlphaF(inputs.captionStyle ? kCaptionSecondary : kLabelSecondary);
  const bool dimmed = inputs.content == TranscriptContent::both;
  const QTextCharFormat body = format(inputs.fontSize, primary);
  chars_ = {body, format(kSmallSystemFontSize, secondary),
            format(inputs.fontSize, dimmed ? secondary : primary), body};
  block_.setLineHeight(inputs.fontSize * kLineSpacing, QTextBlockFormat::LineDistanceHeight);
  block_.setBottomMargin(inputs.fontSize * kParagraphSpacing);
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

}  // namespace velun
