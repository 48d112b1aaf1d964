// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/bottom_pinned_scroll_view.h"

#include "ui/caption/transcript_document.h"
#include "ui/caption/transcript_layout.h"

#include <algorithm>
#include <optional>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QWheelEvent>

namespace velun {

namespace {

// Tolerance for being at the end when the view is resized.
constexpr int kResizeSlack = 2;
constexpr double kNotch = QWheelEvent::DefaultDeltasPerStep;
constexpr double kLinesPerNotch = 3;
// A line is cut by less before its letters are, so that scrolled lines do not vanish at once.
constexpr qreal kCutLineFade = 4;
constexpr std::chrono::milliseconds kIdlePause{4};
constexpr std::chrono::microseconds kIdleSlice{3000};

}  // namespace

BottomPinnedScrollView::BottomPinnedScrollView(TranscriptDocument& document, QWidget* parent)
    : QTextEdit(parent), document_(document), layout_(document.layout()) {
  setReadOnly(true);
  setDocument(&document.text());
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setAutoFillBackground(false);
  viewport()->setAutoFillBackground(false);
  rest_.setInterval(kIdlePause);
  connect(&rest_, &QTimer::timeout, this, &BottomPinnedScrollView::layOutRest);
  connect(&layout_, &TranscriptLayout::fellBehind, this, [this] {
    isBehind_ = true;
    if (isVisible()) rest_.start();
  });
}

bool BottomPinnedScrollView::isAtBottom(int slack) const {
  const QScrollBar* bar = verticalScrollBar();
  return bar->value() >= bar->maximum() - slack;
}

void BottomPinnedScrollView::scrollToEnd() {
  const QScopedValueRollback settling(isSettling_, true);
  settleAtEnd();
}

void BottomPinnedScrollView::keepPlace(bool pinned, const std::function<void()>& change) {
  const QScopedValueRollback settling(isSettling_, true);
  const int top = verticalScrollBar()->value();
  QTextCursor read(document());
  read.setPosition(layout_.hitTest(QPointF(0, top), Qt::FuzzyHit));
  const int above = static_cast<int>(layout_.lineRect(read.position()).top()) - top;
  change();
  if (pinned) {
    settleAtEnd();
  } else if (top == 0) {
    verticalScrollBar()->setValue(0);
    layOutInView();
  } else {
    settleAt(read, above);
  }
}

void BottomPinnedScrollView::keepOrigin(bool pinned, const std::function<void()>& change) {
  const QScopedValueRollback settling(isSettling_, true);
  const int top = verticalScrollBar()->value();
  change();
  if (pinned) {
    settleAtEnd();
  } else {
    verticalScrollBar()->setValue(top);
    layOutInView();
    layout_.publishSize();
  }
}

void BottomPinnedScrollView::settleAtEnd() {
  do {
    layout_.publishSize();
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
  } while (layOutInView());
}

void BottomPinnedScrollView::settleAt(const QTextCursor& text, int above) {
  do {
    const int line = static_cast<int>(layout_.lineRect(text.position()).top());
    layout_.publishSize();
    verticalScrollBar()->setValue(line - above);
  } while (layOutInView());
}

/// Returns whether any block height changed.
bool BottomPinnedScrollView::layOutInView() {
  const int top = verticalScrollBar()->value();
  const int bottom = top + viewport()->height();
  bool moved = false;
  for (QTextBlock block = layout_.blockAt(top); block.isValid() && layout_.blockTop(block) < bottom;
       block = block.next()) {
    moved |= document_.layOut(block);
  }
  return moved;
}

void BottomPinnedScrollView::layOutRest() {
  keepPlace(isAtBottom(kResizeSlack), [this] { isBehind_ = document_.layOutMore(kIdleSlice); });
  if (!isBehind_) rest_.stop();
}

void BottomPinnedScrollView::resizeEvent(QResizeEvent* event) {
  keepPlace(isAtBottom(kResizeSlack), [this, event] { QTextEdit::resizeEvent(event); });
}

void BottomPinnedScrollView::updateFade() {
  const int top = verticalScrollBar()->value();
  if (pitch_ > 0) {
    constexpr int kInset = TranscriptLayout::verticalInset;
    layout_.setFade(TranscriptLayout::Fade{qreal(top + kInset), kInset});
    return;
  }
  const QRectF first = layout_.lineRect(layout_.hitTest(QPointF(0, top), Qt::FuzzyHit));
  // In a view that has no room for another line, a part of one is better than nothing.
  const bool hasMore = first.bottom() + first.height() <= top + viewport()->height();
  layout_.setFade(hidesCutLines_ && hasMore
                      ? std::optional(TranscriptLayout::Fade{qreal(top), kCutLineFade})
                      : std::nullopt);
}

void BottomPinnedScrollView::paintEvent(QPaintEvent* event) {
  updateFade();
  QTextEdit::paintEvent(event);
}

void BottomPinnedScrollView::wheelEvent(QWheelEvent* event) {
  if (pitch_ == 0) return QTextEdit::wheelEvent(event);
  event->accept();
  const double inView = std::max(viewport()->height() / pitch_, 1);
  turned_ -= event->angleDelta().y() / kNotch * std::min(kLinesPerNotch, inView);
  const int lines = static_cast<int>(turned_);
  turned_ -= lines;
  verticalScrollBar()->setValue(verticalScrollBar()->value() + lines * pitch_);
}

void BottomPinnedScrollView::scrollContentsBy(int dx, int dy) {
  QTextEdit::scrollContentsBy(dx, dy);
  if (isSettling_) return;
  if (pitch_ > 0) {
    // The keyboard and a selection that is dragged also scroll.
    QScrollBar* bar = verticalScrollBar();
    const int whole = (bar->value() + pitch_ / 2) / pitch_ * pitch_;
    if (whole != bar->value() && whole <= bar->maximum()) return bar->setValue(whole);
  }
  if (!isBehind_) return;
  keepPlace(false, [] {});
}

void BottomPinnedScrollView::hideEvent(QHideEvent* event) {
  rest_.stop();
  QTextEdit::hideEvent(event);
}

void BottomPinnedScrollView::showEvent(QShowEvent* event) {
  // QTextEdit scrolls to the cursor when it is first shown.
  keepPlace(isAtBottom(kResizeSlack), [this, event] { QTextEdit::showEvent(event); });
  if (isBehind_) rest_.start();
}

}  // namespace velun
