// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/caption/halo_cache.h"

#include <chrono>
#include <optional>
#include <QAbstractTextDocumentLayout>
#include <QTextBlock>

namespace velun {

/// Lays out a transcript's paragraphs lazily, so that the cost of a change of width or text depends
/// on the visible part and not on the length of the transcript. Paragraphs that are not laid out
/// for the current width keep their old height, or an estimate; they are laid out later in slices.
///
/// QTextDocument keeps running sums of its blocks' line counts. We store a block's height in points
/// instead of its line count, so that positions are found in logarithmic time.
class TranscriptLayout final : public QAbstractTextDocumentLayout {
  Q_OBJECT

 public:
  /// Space around the text, in points.
  static constexpr int horizontalInset = 18;
  static constexpr int verticalInset = 10;

  explicit TranscriptLayout(QTextDocument* document);

  /// What is painted around the letters; `radius` is in points.
  void setEdge(TextEdge edge, double radius);

  /// How lines fade out at the top of the view: a line at `top` or below is opaque, one that is
  /// `length` higher is transparent. In points.
  struct Fade {
    qreal top = 0;
    qreal length = 1;
  };
  /// nullopt: lines are cut.
  void setFade(std::optional<Fade> fade) { fade_ = fade; }

  void draw(QPainter* painter, const PaintContext& context) override;
  int hitTest(const QPointF& point, Qt::HitTestAccuracy accuracy) const override;
  int pageCount() const override { return 1; }
  QSizeF documentSize() const override;
  QRectF frameBoundingRect(QTextFrame* frame) const override;
  /// Lays the block out if needed.
  QRectF blockBoundingRect(const QTextBlock& block) const override;

  /// The block at `y`; the first or last block when `y` is outside the document.
  QTextBlock blockAt(int y) const;
  /// The top of a block, from the heights known so far.
  int blockTop(const QTextBlock& block) const;
  int blockHeight(const QTextBlock& block) const { return block.lineCount(); }
  /// The rectangle of the line at a text position; lays out its block.
  QRectF lineRect(int position) const;

  bool isLaidOut(const QTextBlock& block) const { return block.userState() == generation_; }
  /// Lays out the block for the current width if needed. Returns whether its height changed.
  bool layOut(QTextBlock block) const;
  /// Lays out more blocks for about `time`. Returns false when all blocks are laid out.
  bool layOutMore(std::chrono::microseconds time);
  /// Emits documentSizeChanged if the size changed since the last call.
  void publishSize();

 Q_SIGNALS:
  /// Some blocks are not laid out; call layOutMore().
  void fellBehind();

 protected:
  void documentChanged(int from, int charsRemoved, int charsAdded) override;

 private:
  void drawBlock(QPainter* painter, const QTextBlock& block, const PaintContext& context,
                 const QRectF& clip) const;
  void drawFadingLines(QPainter* painter, const QTextBlock& block, const PaintContext& context,
                       const QRectF& clip) const;
  void drawHalos(QPainter* painter, const QRectF& clip);
  qreal topOfFirstWholeLine() const;
  int estimatedHeight(const QTextBlock& block) const;

  // Stored in each block that is laid out; a new width increments it.
  int generation_ = 1;
  int width_ = 0;
  int publishedHeight_ = -1;
  int nextBlock_ = 0;
  HaloCache halos_;
  std::optional<Fade> fade_;
};

}  // namespace velun
