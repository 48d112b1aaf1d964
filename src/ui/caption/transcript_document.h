// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/transcript_formats.h"

#include <chrono>
#include <memory>
#include <QTextDocument>
#include <span>

class QTextBlock;
class QTextCursor;

namespace velun {

class TranscriptLayout;

/// The text document of a transcript view. Changes are incremental, but the result, formats
/// included, always equals a full replacement of the text by the current paragraphs.
class TranscriptDocument final {
 public:
  TranscriptDocument();
  ~TranscriptDocument();

  QTextDocument& text() const { return *text_; }
  TranscriptLayout& layout() const { return *layout_; }
  const TranscriptParagraphs& shown() const { return shown_; }
  const TranscriptFormats& formats() const { return formats_; }

  /// Replaces `count` paragraphs starting at `first` by `paragraphs`. Returns false and changes
  /// nothing when they are equal. With `test` it only compares.
  bool replace(std::size_t first, std::size_t count,
               std::span<const TranscriptParagraph> paragraphs, bool test = false);

  /// Formats the text anew, which also reverts foreign changes. Of a long text, each paragraph gets
  /// its formats only when it is laid out by layOut() or layOutMore().
  void setFormats(const TranscriptFormats& formats);

  /// Formats and lays out a paragraph if needed. Returns whether its height changed.
  bool layOut(const QTextBlock& block);
  /// Formats and lays out more paragraphs for about `time`. Returns false when all are laid out.
  bool layOutMore(std::chrono::microseconds time);

  /// False after the text was changed by other code: screen readers can write even into read-only
  /// text. True again after setFormats().
  bool isIntact() const { return isIntact_; }

 private:
  static constexpr std::size_t kAllFormatted = static_cast<std::size_t>(-1);

  void rewrite(std::size_t first, std::size_t count,
               std::span<const TranscriptParagraph> paragraphs);
  void rewriteAfter(QTextCursor& cursor, std::size_t first, std::size_t count,
                    std::span<const TranscriptParagraph> paragraphs) const;
  void rewriteAtStart(QTextCursor& cursor, std::size_t count,
                      std::span<const TranscriptParagraph> paragraphs) const;
  void insertParagraph(QTextCursor& cursor, const TranscriptParagraph& paragraph) const;
  void rewriteText(std::size_t at, const QString& text);
  void format(const QTextBlock& block);

  std::unique_ptr<QTextDocument> text_;
  TranscriptLayout* layout_;
  TranscriptParagraphs shown_;
  TranscriptFormats formats_;
  // The paragraphs before this one have the present formats.
  std::size_t formatted_ = kAllFormatted;
  bool isWriting_ = false;
  bool isIntact_ = true;
};

}  // namespace velun
