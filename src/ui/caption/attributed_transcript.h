// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/transcript_inputs.h"

#include <cstdint>
#include <vector>

namespace velun {

struct Line;

/// How a paragraph of a transcript is set; its font and colour follow from the inputs.
enum class TranscriptStyle : std::uint8_t { body, meta, translation, placeholder };

/// One paragraph of a transcript. A text has a line break between its paragraphs and none after
/// the last.
struct TranscriptParagraph {
  QString text;
  TranscriptStyle style = TranscriptStyle::body;
  /// What a placeholder's spinner is labelled with; empty on ordinary text.
  QString pendingLabel;

  bool operator==(const TranscriptParagraph&) const = default;
};

using TranscriptParagraphs = std::vector<TranscriptParagraph>;

/// The whole transcript, in the interface language of the moment.
TranscriptParagraphs attributedTranscript(const TranscriptInputs& inputs);

/// Appends what one line is shown as.
void appendLine(const TranscriptInputs& inputs, const Line& line, TranscriptParagraphs& to);

/// Appends what follows the last line: the draft, or the placeholder that stands for it.
void appendDraft(const TranscriptInputs& inputs, TranscriptParagraphs& to);

}  // namespace velun
