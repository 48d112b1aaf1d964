// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <QAbstractTextDocumentLayout>
#include <QTextBlock>

namespace velun {

/// Lays out a transcript's paragraphs only when they are needed, so that a change of width or text
/// costs what is in view and not the length of the transcript. Paragraphs that were not laid out
/// for the present width keep the height they had, or an estimate; the rest is done in slices.
///
/// The document keeps running sums of its blocks' line counts. A block's height in points is kept
/// there in place of the count, so that places are found in logarithmic time.
class TranscriptLayout final : public QAbstractTextDocumentLayout {
  Q_OBJECT

 public:
  /// Space around the text, in points.
  static constexpr int horizontalInset = 18;
  static constexpr int verticalInset = 10;

  explicit TranscriptLayout(QTextDocument* document);

  void draw(QPainter* painter, const PaintContext& context) override;
  int hitTest(const QPointF& point, Qt::HitTestAccuracy accuracy) const override;
  int pageCount() const override { return 1; }
  QSizeF documentSize() const override;
  QRectF frameBoundingRect(QTextFrame* frame) const override;
  /// Lays the block out if needed.
  QRectF blockBoundingRect(const QTextBlock& block) const override;

  /// The block at a height in the document; the first or last one beyond its ends.
  QTextBlock blockAt(int y) const;
  /// Where a block begins, from what is known so far.
  int topOf(const QTextBlock& block) const;
  int heightOf(const QTextBlock& block) const { return block.lineCount(); }
  /// Where the line of a position in the text stands; lays its block out.
  QRectF lineRect(int position) const;

  bool isLaidOut(const QTextBlock& block) const { return block.userState() == generation_; }
  /// Lays the block out for the present width, unless it is; tells whether its height changed.
  bool layOut(QTextBlock block) const;
  /// Goes on with what is not laid out yet, for about as long as that; false when all is done.
  bool layOutMore(std::chrono::microseconds time);
  /// Tells the view the size of the document, if it changed since the last time.
  void publishSize();

 Q_SIGNALS:
  /// Blocks were left out of a layout; `layOutMore` gets them done.
  void fellBehind();

 protected:
  void documentChanged(int from, int charsRemoved, int charsAdded) override;

 private:
  int estimatedHeight(const QTextBlock& block) const;

  // Blocks carry the generation they were laid out in; a new width begins another one.
  int generation_ = 1;
  int width_ = 0;
  int publishedHeight_ = -1;
  int nextBlock_ = 0;
};

}  // namespace velun
