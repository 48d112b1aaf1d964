// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/transcript_document.h"

#include "ui/caption/transcript_layout.h"

#include <algorithm>
#include <QScopedValueRollback>
#include <QSignalBlocker>
#include <QTextBlock>
#include <QTextCursor>

namespace velun {

namespace {

// A text of more paragraphs is formatted lazily.
constexpr std::size_t kMaxEagerParagraphs = 64;

using Index = TranscriptParagraphs::difference_type;

Index index(std::size_t i) {
  return static_cast<Index>(i);
}

/// Whether two paragraphs differ, and only in the text after the label.
bool differInText(const TranscriptParagraph& a, const TranscriptParagraph& b) {
  return a.style == b.style && a.pendingLabel.isEmpty() && b.pendingLabel.isEmpty() &&
         a.labelLength == b.labelLength && a.labelColor == b.labelColor && a.text != b.text &&
         a.text.left(a.labelLength) == b.text.left(b.labelLength);
}

}  // namespace

TranscriptDocument::TranscriptDocument() : text_(std::make_unique<QTextDocument>()) {
  text_->setUndoRedoEnabled(false);
  text_->setDocumentMargin(0);
  layout_ = new TranscriptLayout(text_.get());
  text_->setDocumentLayout(layout_);
  QObject::connect(text_.get(), &QTextDocument::contentsChange, text_.get(), [this] {
    if (!isWriting_) isIntact_ = false;
  });
}

TranscriptDocument::~TranscriptDocument() = default;

bool TranscriptDocument::replace(std::size_t first, std::size_t count,
                                 std::span<const TranscriptParagraph> paragraphs, bool test) {
  const std::span<const TranscriptParagraph> old = std::span(shown_).subspan(first, count);
  const auto start = std::mismatch(old.begin(), old.end(), paragraphs.begin(), paragraphs.end());
  if (start.first == old.end() && start.second == paragraphs.end()) return false;
  if (test) return true;
  const auto same = static_cast<std::size_t>(start.first - old.begin());
  std::size_t after = 0;
  while (after < std::min(old.size(), paragraphs.size()) - same &&
         old[old.size() - 1 - after] == paragraphs[paragraphs.size() - 1 - after]) {
    ++after;
  }
  rewrite(first + same, count - same - after,
          paragraphs.subspan(same, paragraphs.size() - same - after));
  return true;
}

void TranscriptDocument::setFormats(const TranscriptFormats& formats) {
  formats_ = formats;
  if (isIntact_ && shown_.size() > kMaxEagerParagraphs) {
    formatted_ = 0;
    Q_EMIT layout_->fellBehind();
    return;
  }
  const TranscriptParagraphs all = shown_;
  rewrite(0, all.size(), all);
  formatted_ = kAllFormatted;
  isIntact_ = true;
}

bool TranscriptDocument::layOut(const QTextBlock& block) {
  const int before = layout_->blockHeight(block);
  if (formatted_ != kAllFormatted) format(block);
  layout_->layOut(block);
  return layout_->blockHeight(block) != before;
}

bool TranscriptDocument::layOutMore(std::chrono::microseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  while (formatted_ < shown_.size()) {
    format(text_->findBlockByNumber(static_cast<int>(formatted_++)));
    if (formatted_ % 16 == 0 && std::chrono::steady_clock::now() >= end) return true;
  }
  formatted_ = kAllFormatted;
  const auto rest = end - std::chrono::steady_clock::now();
  return layout_->layOutMore(std::chrono::duration_cast<std::chrono::microseconds>(rest));
}

void TranscriptDocument::format(const QTextBlock& block) {
  const auto number = static_cast<std::size_t>(block.blockNumber());
  if (number >= shown_.size()) return;
  const TranscriptParagraph& paragraph = shown_[number];
  // A text begins with a block of the body's style.
  const QTextCharFormat& ofBlock =
      formats_.charFormat(number == 0 ? TranscriptStyle::body : paragraph.style);
  if (block.blockFormat() == formats_.blockFormat() && block.charFormat() == ofBlock) return;
  const QScopedValueRollback writing(isWriting_, true);
  // Screen readers would hear the whole text again.
  const QSignalBlocker silent(text_.get());
  QTextCursor cursor(block);
  cursor.beginEditBlock();
  cursor.setBlockFormat(formats_.blockFormat());
  cursor.setBlockCharFormat(ofBlock);
  cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
  cursor.setCharFormat(formats_.charFormat(paragraph));
  if (paragraph.labelLength > 0) {
    cursor.setPosition(block.position());
    cursor.setPosition(block.position() + paragraph.labelLength, QTextCursor::KeepAnchor);
    cursor.setCharFormat(formats_.labelFormat(paragraph));
  }
  cursor.endEditBlock();
}

void TranscriptDocument::rewriteText(std::size_t at, const QString& text) {
  TranscriptParagraph& shown = shown_[at];
  const auto length = std::min(shown.text.size(), text.size());
  const auto same =
      std::mismatch(shown.text.begin(), shown.text.begin() + length, text.begin()).first -
      shown.text.begin();
  QTextCursor cursor(text_->findBlockByNumber(static_cast<int>(at)));
  cursor.setPosition(cursor.position() + static_cast<int>(same));
  cursor.movePosition(QTextCursor::EndOfBlock, QTextCursor::KeepAnchor);
  cursor.insertText(text.mid(same), formats_.charFormat(shown.style));
  shown.text = text;
}

void TranscriptDocument::rewrite(std::size_t first, std::size_t count,
                                 std::span<const TranscriptParagraph> paragraphs) {
  const QScopedValueRollback writing(isWriting_, true);
  // Paragraphs that are not formatted yet may move to an earlier place.
  if (formatted_ != kAllFormatted) formatted_ = std::min(formatted_, first);
  if (count == 1 && paragraphs.size() == 1 && differInText(shown_[first], paragraphs[0])) {
    rewriteText(first, paragraphs[0].text);
    return;
  }
  const auto begin = shown_.begin() + index(first);
  QTextCursor cursor(text_.get());
  cursor.beginEditBlock();
  if (first > 0) {
    rewriteAfter(cursor, first, count, paragraphs);
  } else {
    rewriteAtStart(cursor, count, paragraphs);
  }
  shown_.erase(begin, begin + index(count));
  shown_.insert(shown_.begin() + index(first), paragraphs.begin(), paragraphs.end());
  cursor.endEditBlock();
}

void TranscriptDocument::insertParagraph(QTextCursor& cursor,
                                         const TranscriptParagraph& paragraph) const {
  if (paragraph.labelLength > 0) {
    cursor.insertText(paragraph.text.left(paragraph.labelLength), formats_.labelFormat(paragraph));
  }
  cursor.insertText(paragraph.text.mid(paragraph.labelLength), formats_.charFormat(paragraph));
}

void TranscriptDocument::rewriteAfter(QTextCursor& cursor, std::size_t first, std::size_t count,
                                      std::span<const TranscriptParagraph> paragraphs) const {
  const auto paragraphEnd = [this](std::size_t paragraph) {
    const QTextBlock block = text_->findBlockByNumber(static_cast<int>(paragraph));
    return block.position() + block.length() - 1;
  };
  cursor.setPosition(paragraphEnd(first - 1));
  cursor.setPosition(paragraphEnd(first + count - 1), QTextCursor::KeepAnchor);
  cursor.removeSelectedText();
  for (const TranscriptParagraph& paragraph : paragraphs) {
    cursor.insertBlock(formats_.blockFormat(), formats_.charFormat(paragraph.style));
    insertParagraph(cursor, paragraph);
  }
}

void TranscriptDocument::rewriteAtStart(QTextCursor& cursor, std::size_t count,
                                        std::span<const TranscriptParagraph> paragraphs) const {
  const bool toEnd = count == shown_.size();
  if (toEnd) {
    cursor.movePosition(QTextCursor::End, QTextCursor::KeepAnchor);
  } else {
    const QTextBlock next = text_->findBlockByNumber(static_cast<int>(count));
    cursor.setPosition(next.position(), QTextCursor::KeepAnchor);
  }
  cursor.removeSelectedText();
  cursor.setBlockFormat(formats_.blockFormat());
  if (toEnd) cursor.setBlockCharFormat(formats_.charFormat(TranscriptStyle::body));
  for (std::size_t i = 0; i < paragraphs.size(); ++i) {
    insertParagraph(cursor, paragraphs[i]);
    const bool last = i + 1 == paragraphs.size();
    if (last && toEnd) break;
    const TranscriptParagraph& next = last ? shown_[count] : paragraphs[i + 1];
    cursor.insertBlock(formats_.blockFormat(), formats_.charFormat(next.style));
  }
}

}  // namespace velun
