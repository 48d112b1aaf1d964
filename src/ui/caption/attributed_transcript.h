// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/transcript_inputs.h"

#include <cstdint>
#include <vector>

namespace velun {

struct Line;

/// The style of a paragraph; its font and colour follow from the inputs.
enum class TranscriptStyle : std::uint8_t { body, meta, translation, placeholder };

/// One paragraph of a transcript. A text has a line break between its paragraphs and none after
/// the last.
struct TranscriptParagraph {
  QString text;
  TranscriptStyle style = TranscriptStyle::body;
  /// The label of a placeholder's spinner; empty for ordinary text.
  QString pendingLabel = {};
  /// The number of letters at the start of `text` that are the line's label, and their colour.
  int labelLength = 0;
  QColor labelColor = {};
  QString labelHelp = {};

  bool operator==(const TranscriptParagraph&) const = default;
};

using TranscriptParagraphs = std::vector<TranscriptParagraph>;

/// The whole transcript, in the current interface language.
TranscriptParagraphs attributedTranscript(const TranscriptInputs& inputs);

/// Appends the paragraphs of one line.
void appendLine(const TranscriptInputs& inputs, const Line& line, TranscriptParagraphs& to);

/// Appends the paragraphs after the last line: the draft, or its placeholder.
void appendDraft(const TranscriptInputs& inputs, TranscriptParagraphs& to);

}  // namespace velun
