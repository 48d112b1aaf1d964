// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/selectable_transcript_text_view.h"

#include "language/localization.h"
#include "ui/caption/caption_appearance.h"
#include "ui/caption/pending_indicator.h"
#include "ui/caption/transcript_document.h"
#include "ui/caption/transcript_layout.h"

#include <algorithm>
#include <QApplication>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QMenu>
#include <QMimeData>
#include <QPainter>
#include <QScrollBar>
#include <QTextDocumentFragment>
#include <QToolTip>
#include <utility>

namespace velun {

namespace {

constexpr int kMaxSpinnerSize = 16;
constexpr int kCaretWidth = 1;
constexpr int kMarkWidth = 3;

/// The label of a paragraph's placeholder; empty when it has none.
QString pendingLabel(const QTextBlock& block) {
  const QTextBlock::iterator first = block.begin();
  if (first.atEnd()) return {};
  return first.fragment().charFormat().property(TranscriptFormats::pendingAttribute).toString();
}

}  // namespace

SelectableTranscriptTextView::SelectableTranscriptTextView(TranscriptDocument& document,
                                                           QWidget* parent)
    : BottomPinnedScrollView(document, parent), layout_(document.layout()) {
  setTextInteractionFlags(Qt::TextSelectableByMouse);
  setCursorWidth(0);
  setTabChangesFocus(true);
  setAcceptDrops(false);
  connect(this, &QTextEdit::selectionChanged, this,
          &SelectableTranscriptTextView::selectionSettled);
}

void SelectableTranscriptTextView::clearSelection() {
  QTextCursor cursor = textCursor();
  if (!cursor.hasSelection()) return;
  cursor.clearSelection();
  setTextCursor(cursor);
}

void SelectableTranscriptTextView::setPanelStyle(const PanelStyle* style) {
  setVerticalScrollBarPolicy(style ? Qt::ScrollBarAlwaysOff : Qt::ScrollBarAsNeeded);
  setHidesCutLines(style != nullptr);
  QPalette palette;
  palette.setColor(QPalette::Base, Qt::transparent);
  if (style) {
    QColor selection = CaptionAppearance::accent;
    selection.setAlphaF(0.45F);
    palette.setColor(QPalette::Text, style->text);
    palette.setColor(QPalette::Highlight, selection);
    palette.setColor(QPalette::HighlightedText, style->text);
  }
  setPalette(palette);
}

void SelectableTranscriptTextView::setMarkedBlocks(int first, int count) {
  if (first == firstMarked_ && count == markedCount_) return;
  firstMarked_ = first;
  markedCount_ = count;
  viewport()->update();
}

QRect SelectableTranscriptTextView::markRect() const {
  if (markedCount_ == 0) return {};
  const QTextBlock first = document()->findBlockByNumber(firstMarked_);
  QTextBlock last = document()->findBlockByNumber(firstMarked_ + markedCount_ - 1);
  if (!first.isValid() || !last.isValid()) return {};
  // The empty space before the next line is not marked.
  while (last != first && last.length() == 1) last = last.previous();
  const qreal top = layout_.lineRect(first.position()).top();
  const qreal bottom = layout_.lineRect(last.position() + last.length() - 1).bottom();
  const int left = (TranscriptLayout::horizontalInset - kMarkWidth) / 2;
  return QRectF(left, top - verticalScrollBar()->value(), kMarkWidth, bottom - top).toRect();
}

void SelectableTranscriptTextView::paintEvent(QPaintEvent* event) {
  if (const QRect mark = markRect(); mark.intersects(event->rect())) {
    QPainter painter(viewport());
    painter.fillRect(mark, QGuiApplication::palette().color(QPalette::Highlight));
  }
  BottomPinnedScrollView::paintEvent(event);
}

void SelectableTranscriptTextView::updatePendingIndicators() {
  for (PendingIndicator* indicator : std::exchange(pendingIndicators_, {})) delete indicator;
  positionPendingIndicators();
}

void SelectableTranscriptTextView::positionPendingIndicators() {
  const int top = verticalScrollBar()->value();
  const int bottom = top + viewport()->height();
  std::size_t used = 0;
  for (QTextBlock block = layout_.blockAt(top); block.isValid() && layout_.blockTop(block) < bottom;
       block = block.next()) {
    const QString label = pendingLabel(block);
    if (label.isEmpty()) continue;
    if (used == pendingIndicators_.size()) {
      pendingIndicators_.push_back(new PendingIndicator(viewport()));
    }
    PendingIndicator* indicator = pendingIndicators_[used++];
    const QRectF line = layout_.lineRect(block.position()).translated(0, -top);
    const int side = std::min(static_cast<int>(line.height()), kMaxSpinnerSize);
    indicator->setLabel(label);
    indicator->setGeometry(static_cast<int>(line.left()),
                           static_cast<int>(line.center().y()) - side / 2, side, side);
    indicator->show();
  }
  while (pendingIndicators_.size() > used) {
    delete pendingIndicators_.back();
    pendingIndicators_.pop_back();
  }
}

void SelectableTranscriptTextView::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton) {
    isSelectingText_ = true;
    pressedAt_ = event->pos();
  }
  setHasCaret(false);
  BottomPinnedScrollView::mousePressEvent(event);
}

void SelectableTranscriptTextView::mouseMoveEvent(QMouseEvent* event) {
  // No release event arrives after dragging selected text to another window.
  if (isSelectingText_ && !event->buttons().testFlag(Qt::LeftButton)) endSelecting();
  BottomPinnedScrollView::mouseMoveEvent(event);
}

void SelectableTranscriptTextView::mouseReleaseEvent(QMouseEvent* event) {
  BottomPinnedScrollView::mouseReleaseEvent(event);
  if (event->button() != Qt::LeftButton) return;
  const QPoint position = event->pos();
  const bool isClick = !hasSelection() && (position - pressedAt_).manhattanLength() <
                                              QApplication::startDragDistance();
  endSelecting();
  if (isClick) Q_EMIT clicked(position);
}

void SelectableTranscriptTextView::endSelecting() {
  if (std::exchange(isSelectingText_, false)) Q_EMIT selectionSettled();
}

void SelectableTranscriptTextView::focusInEvent(QFocusEvent* event) {
  if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason) {
    setHasCaret(true);
  }
  BottomPinnedScrollView::focusInEvent(event);
}

void SelectableTranscriptTextView::focusOutEvent(QFocusEvent* event) {
  BottomPinnedScrollView::focusOutEvent(event);
  if (event->reason() != Qt::PopupFocusReason) setHasCaret(false);
}

/// Without it the text can still be selected with the mouse. The flags end its blinking, the width
/// hides it: with the flags alone one that was moved stays.
void SelectableTranscriptTextView::setHasCaret(bool has) {
  const Qt::TextInteractionFlags flags =
      has ? Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard : Qt::TextSelectableByMouse;
  if (flags == textInteractionFlags()) return;
  setTextInteractionFlags(flags);
  setCursorWidth(has ? kCaretWidth : 0);
}

void SelectableTranscriptTextView::keyPressEvent(QKeyEvent* event) {
  setHasCaret(true);
  if (event->matches(QKeySequence::Find)) {
    Q_EMIT findRequested();
  } else if (event->key() == Qt::Key_Escape && hasSelection()) {
    clearSelection();
  } else {
    BottomPinnedScrollView::keyPressEvent(event);
  }
}

void SelectableTranscriptTextView::setMenuMaker(std::function<std::unique_ptr<QMenu>()> makeMenu) {
  makeMenu_ = std::move(makeMenu);
}

std::unique_ptr<QMenu> SelectableTranscriptTextView::contextMenu() {
  std::unique_ptr<QMenu> menu = makeMenu_ ? makeMenu_() : std::make_unique<QMenu>(this);
  QAction* copyText = menu->addAction(L("Copy", "복사"), this, &QTextEdit::copy);
  copyText->setShortcut(QKeySequence::Copy);
  copyText->setEnabled(hasSelection());
  QAction* selectAllText =
      menu->addAction(L("Select All", "전체 선택"), this, &QTextEdit::selectAll);
  selectAllText->setShortcut(QKeySequence::SelectAll);
  selectAllText->setEnabled(!document()->isEmpty());
  menu->addSeparator();
  menu->addAction(L("Find…", "찾기…"), this, &SelectableTranscriptTextView::findRequested)
      ->setShortcut(QKeySequence::Find);
  return menu;
}

void SelectableTranscriptTextView::contextMenuEvent(QContextMenuEvent* event) {
  const std::unique_ptr<QMenu> menu = contextMenu();
  Q_EMIT menuOpening(*menu, event->pos());
  menu->exec(event->globalPos());
}

void SelectableTranscriptTextView::scrollContentsBy(int dx, int dy) {
  BottomPinnedScrollView::scrollContentsBy(dx, dy);
  positionPendingIndicators();
}

void SelectableTranscriptTextView::resizeEvent(QResizeEvent* event) {
  BottomPinnedScrollView::resizeEvent(event);
  positionPendingIndicators();
}

void SelectableTranscriptTextView::hideEvent(QHideEvent* event) {
  endSelecting();
  BottomPinnedScrollView::hideEvent(event);
}

QMimeData* SelectableTranscriptTextView::createMimeDataFromSelection() const {
  auto* mime = new QMimeData;
  mime->setText(textCursor().selection().toPlainText());
  return mime;
}

bool SelectableTranscriptTextView::viewportEvent(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    const auto* help = static_cast<QHelpEvent*>(event);
    for (const PendingIndicator* indicator : pendingIndicators_) {
      if (!indicator->geometry().contains(help->pos())) continue;
      QToolTip::showText(help->globalPos(), indicator->accessibleName(), viewport());
      return true;
    }
    // The format of a cursor is that of the letter before it.
    QTextCursor cursor = cursorForPosition(help->pos());
    if (cursor.atBlockStart()) cursor.movePosition(QTextCursor::NextCharacter);
    const QString toolTip = cursor.charFormat().toolTip();
    if (!toolTip.isEmpty()) {
      QToolTip::showText(help->globalPos(), toolTip, viewport());
      return true;
    }
  }
  return BottomPinnedScrollView::viewportEvent(event);
}

}  // namespace velun
