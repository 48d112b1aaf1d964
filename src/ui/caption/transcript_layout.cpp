// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/transcript_layout.h"

#include <algorithm>
#include <cmath>
#include <QFontMetricsF>
#include <QPainter>
#include <QTextDocument>
#include <QTextLayout>
#include <utility>

namespace velun {

namespace {

constexpr int kNotLaidOut = -1;
// A change of more blocks than this is laid out lazily.
constexpr int kMaxEagerBlocks = 64;

QList<QTextLayout::FormatRange> selectionsIn(
    const QTextBlock& block, const QList<QAbstractTextDocumentLayout::Selection>& selections) {
  QList<QTextLayout::FormatRange> ranges;
  for (const auto& selection : selections) {
    const int start = std::max(selection.cursor.selectionStart() - block.position(), 0);
    const int end = std::min(selection.cursor.selectionEnd() - block.position(), block.length());
    if (start >= end) continue;
    QTextLayout::FormatRange range;
    range.start = start;
    range.length = end - start;
    range.format = selection.format;
    ranges.append(range);
  }
  return ranges;
}

/// Where the part of the block begins that belongs to its line `index`, or, after the last line,
/// ends; from the top of the block.
qreal lineTop(const QTextBlock& block, int index) {
  const QTextLayout& layout = *block.layout();
  if (index >= layout.lineCount()) return block.lineCount();
  const QTextBlockFormat format = block.blockFormat();
  const bool isFixed = format.lineHeightType() == QTextBlockFormat::FixedHeight;
  return isFixed ? index * format.lineHeight() : layout.lineAt(index).y();
}

}  // namespace

TranscriptLayout::TranscriptLayout(QTextDocument* document)
    : QAbstractTextDocumentLayout(document) {}

void TranscriptLayout::setEdge(TextEdge edge, double radius) {
  if (halos_.edge() == edge && halos_.radius() == radius) return;
  halos_.setEdge(edge, radius);
  Q_EMIT update();
}

QTextBlock TranscriptLayout::blockAt(int y) const {
  const int last = document()->lineCount() - 1;
  return document()->findBlockByLineNumber(std::clamp(y - verticalInset, 0, std::max(last, 0)));
}

int TranscriptLayout::blockTop(const QTextBlock& block) const {
  return verticalInset + block.firstLineNumber();
}

bool TranscriptLayout::layOut(QTextBlock block) const {
  if (isLaidOut(block)) return false;
  const QTextBlockFormat format = block.blockFormat();
  QTextLayout* layout = block.layout();
  QTextOption option = document()->defaultTextOption();
  const bool fromRight = block.textDirection() == Qt::RightToLeft;
  option.setTextDirection(block.textDirection());
  option.setAlignment(fromRight ? Qt::AlignRight : Qt::AlignLeft);
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout->setTextOption(option);

  const qreal width = std::max(width_ - 2 * horizontalInset, 1);
  const bool isFixed = format.lineHeightType() == QTextBlockFormat::FixedHeight;
  qreal y = 0;
  layout->beginLayout();
  for (QTextLine line = layout->createLine(); line.isValid(); line = layout->createLine()) {
    line.setLineWidth(width);
    if (isFixed) {
      line.setPosition(QPointF(horizontalInset, y + (format.lineHeight() - line.height()) / 2));
      y += format.lineHeight();
    } else {
      line.setPosition(QPointF(horizontalInset, y));
      y += std::ceil(line.height()) + format.lineHeight();
    }
  }
  layout->endLayout();

  const int before = block.lineCount();
  block.setLineCount(std::max(qRound(y + format.bottomMargin()), 1));
  block.setUserState(generation_);
  return block.lineCount() != before;
}

int TranscriptLayout::estimatedHeight(const QTextBlock& block) const {
  const QFontMetricsF metrics(block.charFormat().font());
  const qreal width = std::max(width_ - 2 * horizontalInset, 1);
  const int lines = 1 + static_cast<int>(block.length() * metrics.averageCharWidth() / width);
  const QTextBlockFormat format = block.blockFormat();
  const bool isFixed = format.lineHeightType() == QTextBlockFormat::FixedHeight;
  const qreal height = (isFixed ? 0 : metrics.height()) + format.lineHeight();
  return std::max(qRound(lines * height + format.bottomMargin()), 1);
}

bool TranscriptLayout::layOutMore(std::chrono::microseconds time) {
  const auto end = std::chrono::steady_clock::now() + time;
  QTextBlock block = document()->findBlockByNumber(nextBlock_);
  while (block.isValid()) {
    layOut(block);
    ++nextBlock_;
    block = block.next();
    if (nextBlock_ % 16 == 0 && std::chrono::steady_clock::now() >= end) break;
  }
  publishSize();
  return block.isValid();
}

void TranscriptLayout::publishSize() {
  const QSizeF size = documentSize();
  const int height = static_cast<int>(size.height());
  if (std::exchange(publishedHeight_, height) != height) Q_EMIT documentSizeChanged(size);
}

void TranscriptLayout::documentChanged(int from, int, int charsAdded) {
  const int width = std::max(static_cast<int>(document()->pageSize().width()), 1);
  if (std::exchange(width_, width) != width) {
    ++generation_;
    halos_.clear();
    nextBlock_ = 0;
    publishedHeight_ = -1;
    publishSize();
    Q_EMIT update();
    Q_EMIT fellBehind();
    return;
  }
  const QTextBlock first = document()->findBlock(from);
  const QTextBlock last = document()->findBlock(from + std::max(charsAdded - 1, 0));
  const int lastNumber = last.isValid() ? last.blockNumber() : document()->blockCount() - 1;
  const bool atOnce = lastNumber - first.blockNumber() < kMaxEagerBlocks;
  QTextBlock block = first;
  for (int number = first.blockNumber(); block.isValid() && number <= lastNumber; ++number) {
    block.setUserState(kNotLaidOut);
    if (atOnce) {
      layOut(block);
    } else {
      block.setLineCount(estimatedHeight(block));
    }
    block = block.next();
  }
  publishSize();
  Q_EMIT update(QRectF(0, blockTop(first) - halos_.reach(), width_, documentSize().height()));
  if (!atOnce) {
    nextBlock_ = std::min(nextBlock_, first.blockNumber());
    Q_EMIT fellBehind();
  }
}

QSizeF TranscriptLayout::documentSize() const {
  return QSizeF(width_, document()->lineCount() + 2 * verticalInset);
}

QRectF TranscriptLayout::frameBoundingRect(QTextFrame*) const {
  return QRectF(QPointF(), documentSize());
}

QRectF TranscriptLayout::blockBoundingRect(const QTextBlock& block) const {
  if (!block.isValid()) return {};
  layOut(block);
  return QRectF(0, blockTop(block), width_, blockHeight(block));
}

QRectF TranscriptLayout::lineRect(int position) const {
  const QTextBlock block = document()->findBlock(position);
  const QRectF bounds = blockBoundingRect(block);
  const QTextLine line = block.layout()->lineForTextPosition(position - block.position());
  if (!line.isValid()) return bounds;
  return QRectF(line.x(), bounds.top() + line.y(), line.naturalTextWidth(), line.height());
}

int TranscriptLayout::hitTest(const QPointF& point, Qt::HitTestAccuracy accuracy) const {
  const QTextBlock block = blockAt(static_cast<int>(std::floor(point.y())));
  if (!block.isValid()) return accuracy == Qt::ExactHit ? -1 : 0;
  layOut(block);
  const QPointF inside = point - QPointF(0, blockTop(block));
  if (accuracy == Qt::FuzzyHit && point.y() < verticalInset) return block.position();
  if (accuracy == Qt::FuzzyHit && inside.y() > blockHeight(block)) {
    return block.position() + block.length() - 1;
  }
  const QTextLayout* layout = block.layout();
  int place = 0;
  for (int i = 0; i < layout->lineCount(); ++i) {
    const QTextLine line = layout->lineAt(i);
    if (i > 0 && inside.y() < line.y()) break;
    if (accuracy == Qt::ExactHit && line.naturalTextRect().contains(inside)) {
      return block.position() + line.xToCursor(inside.x(), QTextLine::CursorOnCharacter);
    }
    place = line.xToCursor(inside.x());
  }
  return accuracy == Qt::ExactHit ? -1 : block.position() + place;
}

void TranscriptLayout::drawBlock(QPainter* painter, const QTextBlock& block,
                                 const PaintContext& context, const QRectF& clip) const {
  if (fade_ && blockTop(block) < fade_->top) {
    drawFadingLines(painter, block, context, clip);
  } else {
    block.layout()->draw(painter, QPointF(), selectionsIn(block, context.selections), clip);
  }
}

/// A line that the top of the view cuts is transparent; one that enters becomes opaque on its way
/// to its place.
void TranscriptLayout::drawFadingLines(QPainter* painter, const QTextBlock& block,
                                       const PaintContext& context, const QRectF& clip) const {
  const QTextLayout& layout = *block.layout();
  for (int i = 0; i < layout.lineCount(); ++i) {
    const qreal top = blockTop(block) + lineTop(block, i);
    const QRectF line(0, top, width_, blockTop(block) + lineTop(block, i + 1) - top);
    const double opacity = std::clamp(1 + (top - fade_->top) / fade_->length, 0.0, 1.0);
    if (opacity <= 0 || !line.intersects(clip)) continue;
    painter->save();
    painter->setClipRect(line, Qt::IntersectClip);
    painter->setOpacity(opacity);
    layout.draw(painter, QPointF(), selectionsIn(block, context.selections), line);
    painter->restore();
  }
}

qreal TranscriptLayout::topOfFirstWholeLine() const {
  const QTextBlock block = blockAt(static_cast<int>(std::ceil(fade_->top)));
  layOut(block);
  for (int i = 0; i < block.layout()->lineCount(); ++i) {
    const qreal top = blockTop(block) + lineTop(block, i);
    if (top >= fade_->top) return top;
  }
  return blockTop(block) + blockHeight(block);
}

/// Before the letters, so that no halo covers those of the paragraph above.
void TranscriptLayout::drawHalos(QPainter* painter, const QRectF& clip) {
  painter->save();
  if (fade_) {
    const qreal top = topOfFirstWholeLine() - halos_.reach();
    painter->setClipRect(clip.intersected(QRectF(0, top, width_, clip.bottom() - top)),
                         Qt::IntersectClip);
  }
  QTextBlock block = blockAt(static_cast<int>(std::floor(clip.top())) - halos_.reach());
  int top = blockTop(block);
  while (block.isValid() && top - halos_.reach() <= clip.bottom()) {
    layOut(block);
    block.layout()->setPosition(QPointF(0, top));
    halos_.paint(*painter, block);
    top += blockHeight(block);
    block = block.next();
  }
  painter->restore();
}

void TranscriptLayout::draw(QPainter* painter, const PaintContext& context) {
  const QRectF clip = context.clip.isValid() ? context.clip : QRectF(QPointF(), documentSize());
  if (halos_.edge() != TextEdge::none) drawHalos(painter, clip);
  painter->setPen(context.palette.color(QPalette::Text));
  // QTextEdit sets it.
  const int caretWidth = property("cursorWidth").toInt();
  QTextBlock block = blockAt(static_cast<int>(std::floor(clip.top())));
  int top = blockTop(block);
  while (block.isValid() && top <= clip.bottom()) {
    layOut(block);
    // Screen readers read the layout's position to find the visible text.
    block.layout()->setPosition(QPointF(0, top));
    drawBlock(painter, block, context, clip);
    const int cursor = context.cursorPosition - block.position();
    if (caretWidth > 0 && cursor >= 0 && cursor < block.length()) {
      block.layout()->drawCursor(painter, QPointF(), cursor, caretWidth);
    }
    top += blockHeight(block);
    block = block.next();
  }
}

}  // namespace velun
