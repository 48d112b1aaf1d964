// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/attributed_transcript.h"

#include <array>
#include <QTextBlockFormat>
#include <QTextCharFormat>

class QPalette;

namespace velun {

/// The fonts, colours and spacing that a transcript is set in.
class TranscriptFormats final {
 public:
  /// The property of a placeholder's character that holds its label ("VelunPendingCaption").
  static constexpr int pendingAttribute = QTextFormat::UserProperty + 1;

  TranscriptFormats() = default;
  /// `palette` gives the colours of a transcript that is not in the caption panel.
  TranscriptFormats(const TranscriptInputs& inputs, const QPalette& palette);

  QTextCharFormat charFormat(const TranscriptParagraph& paragraph) const;
  /// Of a style, without a label.
  const QTextCharFormat& charFormat(TranscriptStyle style) const;
  /// The one paragraph style: line spacing 0.15 and paragraph spacing 0.35 of the font size.
  const QTextBlockFormat& blockFormat() const { return block_; }

  bool operator==(const TranscriptFormats&) const = default;

 private:
  std::array<QTextCharFormat, 4> chars_;
  QTextBlockFormat block_;
};

/// The desktop's font at a size in points of the interface (a pixel at scale 1), which grows with
/// the desktop's text size.
QFont systemFont(double size);

}  // namespace velun
