// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/transcript_view.h"

#include "language/localization.h"
#include "model/caption_session.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/text_halo.h"
#include "ui/caption/transcript_layout.h"
#include "ui/common/find_bar.h"

#include <algorithm>
#include <numeric>
#include <QEvent>
#include <QScrollBar>
#include <QVBoxLayout>
#include <utility>

namespace velun {

namespace {

// A position this close to the bottom counts as the bottom.
constexpr int kBottomSlack = 24;
// When the pending state of more lines than this has changed, all lines are compared.
constexpr std::size_t kMaxPendingChanges = 64;

const std::vector<Line>& shownLines(const TranscriptInputs& inputs) {
  static const std::vector<Line> none;
  return inputs.session ? inputs.session->lines : none;
}

}  // namespace

TranscriptView::TranscriptView(QWidget* parent)
    : QWidget(parent), textView_(std::make_unique<SelectableTranscriptTextView>(document_, this)) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(textView_.get(), 1);
  setFocusProxy(textView_.get());
  const QScrollBar* bar = textView_->verticalScrollBar();
  connect(bar, &QScrollBar::valueChanged, this, &TranscriptView::updateBottom);
  connect(bar, &QScrollBar::rangeChanged, this, &TranscriptView::updateBottom);
  connect(textView_.get(), &SelectableTranscriptTextView::selectionSettled, this,
          &TranscriptView::applyHeldChange);
  connect(textView_.get(), &SelectableTranscriptTextView::clicked, this, &TranscriptView::clickAt);
  connect(textView_.get(), &QTextEdit::cursorPositionChanged, this,
          &TranscriptView::markLineAtCursor);
  connect(textView_.get(), &SelectableTranscriptTextView::findRequested, this,
          &TranscriptView::openFindBar);
  connect(&document_.text(), &QTextDocument::contentsChange, this, [this] {
    if (document_.isIntact()) return;
    QMetaObject::invokeMethod(this, &TranscriptView::refresh, Qt::QueuedConnection);
  });
  connect(&Localization::shared(), &Localization::languageChanged, this, &TranscriptView::refresh);
}

TranscriptView::~TranscriptView() = default;

void TranscriptView::update(const TranscriptInputs& inputs, const TranscriptChange& change) {
  const bool restyled = !presentation_ || inputs.captionStyle != inputs_.captionStyle ||
                        inputs.style != inputs_.style;
  inputs_ = inputs;
  if (restyled) textView_->setPanelStyle(inputs_.captionStyle ? &inputs_.style : nullptr);
  textView_->setLinePitch(inputs_.wholeLines ? linePitch(inputs_.style, inputs_.fontSize) : 0);
  document_.layout().setEdge(inputs_.captionStyle ? inputs_.style.edge : TextEdge::none,
                             haloRadius(inputs_.fontSize));
  apply(isHeld_ ? TranscriptChange() : change);
}

void TranscriptView::refresh() {
  textView_->setAccessibleName(L("Caption Text", "자막 본문"));
  if (presentation_) apply({});
}

void TranscriptView::applyHeldChange() {
  // Queued: the text view is still handling the event.
  if (isHeld_) QMetaObject::invokeMethod(this, &TranscriptView::refresh, Qt::QueuedConnection);
}

TranscriptView::Presentation TranscriptView::presentation() const {
  return {inputs_.session ? inputs_.session->id : QUuid(), inputs_.content, inputs_.language,
          inputs_.showsMetadata};
}

void TranscriptView::apply(const TranscriptChange& change) {
  if (!presentation_) textView_->setAccessibleName(L("Caption Text", "자막 본문"));
  const bool sameSession = presentation_ == presentation();
  if (!sameSession) clearSelectionInPlace();
  const bool selecting = textView_->hasSelection() || textView_->isSelectingText();
  const bool pins = inputs_.followsLatest && textView_->isAtBottom(kBottomSlack) && !selecting;

  // Not the text view's palette, which is updated only after this view's.
  const TranscriptFormats formats(inputs_, palette());
  const bool reformatted = formats != document_.formats() || !document_.isIntact();
  const std::vector<Replacement> changes = replacements(sameSession ? change : TranscriptChange());
  const bool differs = reformatted || std::ranges::any_of(changes, [this](const Replacement& r) {
                         return document_.replace(r.first, r.count, r.paragraphs, true);
                       });
  if (differs && sameSession && selecting) {
    setHeld(true);
    return;
  }
  setHeld(false);
  presentation_ = presentation();
  shownPending_ = inputs_.pendingTranslationIDs;
  if (differs) {
    const int location = sameSession ? textView_->textCursor().position() : 0;
    const auto replace = [&] {
      if (reformatted) document_.setFormats(formats);
      for (const Replacement& replacement : changes) applyReplacement(replacement);
      putCursorAt(location);
    };
    if (sameSession) {
      textView_->keepPlace(pins, replace);
    } else {
      textView_->keepOrigin(pins, replace);
    }
    textView_->updatePendingIndicators();
  } else {
    // A line without text may have been inserted before others.
    for (const Replacement& replacement : changes) replaceSizes(replacement);
  }
  markLineAtCursor();
  scrollOnJump();
  updateBottom();
}

void TranscriptView::clearSelectionInPlace() {
  // Clearing moves the cursor and scrolls to it; keep the position for the code below.
  const int origin = textView_->verticalScrollBar()->value();
  textView_->clearSelection();
  textView_->verticalScrollBar()->setValue(origin);
}

void TranscriptView::putCursorAt(int location) {
  QTextCursor cursor(document_.text().firstBlock());
  cursor.setPosition(std::min(location, document_.text().characterCount() - 1));
  if (textView_->textCursor() != cursor) textView_->setTextCursor(cursor);
}

std::size_t TranscriptView::paragraphsBefore(std::size_t line) const {
  const auto end = lineSizes_.begin() + static_cast<std::ptrdiff_t>(line);
  return std::accumulate(lineSizes_.begin(), end, std::size_t{0});
}

/// The number of lines for a block of the draft.
std::size_t TranscriptView::lineOfBlock(int block) const {
  std::size_t paragraphs = 0;
  const auto holds = [&](std::uint32_t size) {
    paragraphs += size;
    return paragraphs > static_cast<std::size_t>(block);
  };
  const auto line = std::find_if(lineSizes_.begin(), lineSizes_.end(), holds);
  return static_cast<std::size_t>(line - lineSizes_.begin());
}

std::optional<LineRange> TranscriptView::selectedLines() const {
  const QTextCursor cursor = textView_->textCursor();
  if (!cursor.hasSelection()) return std::nullopt;
  const auto lineAt = [this](int position) {
    return lineOfBlock(document_.text().findBlock(position).blockNumber());
  };
  const std::size_t first = lineAt(cursor.selectionStart());
  const std::size_t last = std::min(lineAt(cursor.selectionEnd() - 1) + 1, lineSizes_.size());
  if (first >= last) return std::nullopt;
  return LineRange{first, last - first};
}

std::optional<std::size_t> TranscriptView::lineAtCursor() const {
  const QTextCursor cursor = textView_->textCursor();
  const int start = cursor.selectionStart();
  const std::size_t line = lineOfBlock(document_.text().findBlock(start).blockNumber());
  return line < lineSizes_.size() ? std::optional(line) : std::nullopt;
}

void TranscriptView::setMarksLineAtCursor(bool marks) {
  marksLineAtCursor_ = marks;
  markLineAtCursor();
}

void TranscriptView::markLineAtCursor() {
  const auto line = marksLineAtCursor_ ? lineAtCursor() : std::nullopt;
  const std::size_t first = line ? paragraphsBefore(*line) : 0;
  const std::size_t count = line ? lineSizes_[*line] : 0;
  textView_->setMarkedBlocks(static_cast<int>(first), static_cast<int>(count));
}

std::optional<std::size_t> TranscriptView::lineAt(const QPoint& position) const {
  const std::size_t line = lineOfBlock(textView_->cursorForPosition(position).blockNumber());
  return line < lineSizes_.size() ? std::optional(line) : std::nullopt;
}

std::optional<std::size_t> TranscriptView::labelAt(const QPoint& position) const {
  const QTextCursor cursor = textView_->cursorForPosition(position);
  const auto block = static_cast<std::size_t>(cursor.blockNumber());
  const TranscriptParagraphs& shown = document_.shown();
  if (block >= shown.size() || cursor.positionInBlock() >= shown[block].labelLength) {
    return std::nullopt;
  }
  return lineAt(position);
}

void TranscriptView::clickAt(const QPoint& position) {
  if (const auto line = labelAt(position)) Q_EMIT labelClicked(*line);
}

TranscriptView::Replacement TranscriptView::makeReplacement(std::size_t firstLine,
                                                            std::size_t lineCount,
                                                            std::span<const Line> lines) const {
  Replacement replacement;
  replacement.first = paragraphsBefore(firstLine);
  replacement.firstLine = firstLine;
  replacement.lineCount = lineCount;
  replacement.count = std::accumulate(
      lineSizes_.begin() + static_cast<std::ptrdiff_t>(firstLine),
      lineSizes_.begin() + static_cast<std::ptrdiff_t>(firstLine + lineCount), std::size_t{0});
  for (const Line& line : lines) {
    const std::size_t before = replacement.paragraphs.size();
    appendLine(inputs_, line, replacement.paragraphs);
    replacement.lineSizes.push_back(
        static_cast<std::uint32_t>(replacement.paragraphs.size() - before));
  }
  return replacement;
}

/// Ordered from the last to the first, so that applying one does not move the others.
std::vector<TranscriptView::Replacement> TranscriptView::replacements(
    const TranscriptChange& change) const {
  const std::span<const Line> lines(shownLines(inputs_));
  const std::optional<std::vector<std::size_t>> changed = changedLines(change);
  std::size_t kept = changed ? lineSizes_.size() : 0;
  if (change.lines == TranscriptChange::Lines::from) {
    kept = std::min(kept, static_cast<std::size_t>(change.index));
  }

  // Everything after the lines that were shown before, or everything.
  Replacement tail = makeReplacement(kept, lineSizes_.size() - kept, lines.subspan(kept));
  tail.count = document_.shown().size() - tail.first;
  appendDraft(inputs_, tail.paragraphs);
  std::vector<Replacement> result;
  result.push_back(std::move(tail));
  if (changed) {
    for (const std::size_t line : *changed) {
      if (line >= kept) continue;
      result.push_back(makeReplacement(line, 1, lines.subspan(line, 1)));
    }
  }
  return result;
}

/// The shown lines that may have changed, from the last to the first; nullopt when any may have.
std::optional<std::vector<std::size_t>> TranscriptView::changedLines(
    const TranscriptChange& change) const {
  const std::vector<Line>& lines = shownLines(inputs_);
  if (change.lines == TranscriptChange::Lines::all || lineSizes_.size() > lines.size()) return {};
  std::vector<std::size_t> changed;
  if (change.lines == TranscriptChange::Lines::one) {
    const auto line = static_cast<std::size_t>(change.index);
    if (line < lineSizes_.size()) changed.push_back(line);
  }
  const QSet<QUuid>& pending = inputs_.pendingTranslationIDs;
  if (inputs_.content != TranscriptContent::translation || pending == shownPending_) return changed;
  for (std::size_t i = lineSizes_.size(); i-- > 0;) {
    if (pending.contains(lines[i].id) == shownPending_.contains(lines[i].id)) continue;
    if (!changed.empty() && changed.front() == i) continue;
    changed.push_back(i);
    if (changed.size() > kMaxPendingChanges) return {};
  }
  std::ranges::sort(changed, std::greater());
  return changed;
}

void TranscriptView::applyReplacement(const Replacement& replacement) {
  document_.replace(replacement.first, replacement.count, replacement.paragraphs);
  replaceSizes(replacement);
}

void TranscriptView::replaceSizes(const Replacement& replacement) {
  const auto at = lineSizes_.begin() + static_cast<std::ptrdiff_t>(replacement.firstLine);
  const auto after = lineSizes_.erase(at, at + static_cast<std::ptrdiff_t>(replacement.lineCount));
  lineSizes_.insert(after, replacement.lineSizes.begin(), replacement.lineSizes.end());
}

void TranscriptView::scrollOnJump() {
  if (std::exchange(lastJump_, inputs_.jumpToLatest) != inputs_.jumpToLatest) {
    textView_->scrollToEnd();
  }
}

void TranscriptView::setHeld(bool held) {
  if (std::exchange(isHeld_, held) != held) Q_EMIT isHeldChanged(held);
}

int TranscriptView::heightForLines(int lines) const {
  const int find = findBar_ && findBar_->isVisibleTo(this) ? findBar_->sizeHint().height() : 0;
  return lines * linePitch(inputs_.style, inputs_.fontSize) + 2 * TranscriptLayout::verticalInset +
         find;
}

void TranscriptView::clearSelection() {
  textView_->clearSelection();
}

void TranscriptView::openFindBar() {
  if (!findBar_) {
    findBar_ = new FindBar(*textView_, inputs_.captionStyle, this);
    layout()->addWidget(findBar_);
  }
  findBar_->open();
}

void TranscriptView::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange ||
      event->type() == QEvent::ApplicationFontChange) {
    refresh();
  }
  QWidget::changeEvent(event);
}

void TranscriptView::updateBottom() {
  if (textView_->isAtBottom(kBottomSlack) == atBottom_ || isBottomPosted_) return;
  isBottomPosted_ = true;
  QMetaObject::invokeMethod(
      this,
      [this] {
        isBottomPosted_ = false;
        const bool now = textView_->isAtBottom(kBottomSlack);
        if (std::exchange(atBottom_, now) != now) Q_EMIT atBottomChanged(now);
      },
      Qt::QueuedConnection);
}

}  // namespace velun
