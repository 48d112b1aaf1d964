// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/attributed_transcript.h"

#include <array>
#include <QTextBlockFormat>
#include <QTextCharFormat>

class QPalette;

namespace velun {

/// The fonts, colours and spacing of a transcript.
class TranscriptFormats final {
 public:
  /// The format property that holds a placeholder's label.
  static constexpr int pendingAttribute = QTextFormat::UserProperty + 1;

  TranscriptFormats() = default;
  /// `palette` is used outside the caption panel.
  TranscriptFormats(const TranscriptInputs& inputs, const QPalette& palette);

  QTextCharFormat charFormat(const TranscriptParagraph& paragraph) const;
  /// The format of the paragraph's label.
  QTextCharFormat labelFormat(const TranscriptParagraph& paragraph) const;
  /// The format of a style, without a label.
  const QTextCharFormat& charFormat(TranscriptStyle style) const;
  /// The format of all paragraphs: their spacing, of the panel's style or 0.15 of the font size
  /// between lines and 0.35 between paragraphs.
  const QTextBlockFormat& blockFormat() const { return block_; }

  bool operator==(const TranscriptFormats&) const = default;

 private:
  void setCaptionFormats(const TranscriptInputs& inputs);

  std::array<QTextCharFormat, 4> chars_;
  QTextBlockFormat block_;
};

/// The desktop's font at a size in points of the interface (a pixel at scale 1), scaled by the
/// desktop's text size.
QFont systemFont(double size);

/// The font of a style, for a text size as of `systemFont`.
QFont captionFont(const PanelStyle& style, double size);

/// The height of every line of a panel that shows whole lines, in points: room for letters of every
/// script at a text size.
int linePitch(const PanelStyle& style, double textSize);

/// The colour of a translation below its original.
QColor dimmedTranslation(const PanelStyle& style);

}  // namespace velun
