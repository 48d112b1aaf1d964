// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/transcript_formats.h"

#include <memory>
#include <QTextDocument>
#include <span>

class QTextCursor;

namespace velun {

class TranscriptLayout;

/// The text document of a transcript view. What it holds always equals a whole replacement by the
/// paragraphs it was given last, attributes included, though only what differs is changed.
class TranscriptDocument final {
 public:
  TranscriptDocument();
  ~TranscriptDocument();

  QTextDocument& text() const { return *text_; }
  TranscriptLayout& layout() const { return *layout_; }
  const TranscriptParagraphs& shown() const { return shown_; }
  const TranscriptFormats& formats() const { return formats_; }

  /// Shows `paragraphs` in place of those from `first` on, `count` of them. Gives false, and
  /// touches nothing, when they are the same. With `test` it only tells.
  bool replace(std::size_t first, std::size_t count,
               std::span<const TranscriptParagraph> paragraphs, bool test = false);

  /// Sets everything in other formats, and anew whatever somebody else made of it.
  void setFormats(const TranscriptFormats& formats);

  /// False once somebody else wrote into the text, as assistive technology can even where it is
  /// only to be read; true again after `setFormats`.
  bool isIntact() const { return isIntact_; }

 private:
  void rewrite(std::size_t first, std::size_t count,
               std::span<const TranscriptParagraph> paragraphs);
  void rewriteAfter(QTextCursor& cursor, std::size_t first, std::size_t count,
                    std::span<const TranscriptParagraph> paragraphs) const;
  void rewriteAtStart(QTextCursor& cursor, std::size_t count,
                      std::span<const TranscriptParagraph> paragraphs) const;
  void rewriteText(std::size_t at, const QString& text);

  std::unique_ptr<QTextDocument> text_;
  TranscriptLayout* layout_;
  TranscriptParagraphs shown_;
  TranscriptFormats formats_;
  bool isWriting_ = false;
  bool isIntact_ = true;
};

}  // namespace velun
