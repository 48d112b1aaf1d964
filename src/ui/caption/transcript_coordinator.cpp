// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/transcript_coordinator.h"

#include "language/localization.h"
#include "model/caption_session.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/transcript_layout.h"

#include <algorithm>
#include <numeric>
#include <QScrollBar>
#include <utility>

namespace velun {

namespace {

// A position this close to the bottom counts as the bottom.
constexpr int kBottomSlack = 24;
// With more lines than this that came to wait, or no longer do, everything is compared.
constexpr std::size_t kManyLines = 64;

const std::vector<Line>& linesOf(const TranscriptInputs& inputs) {
  static const std::vector<Line> none;
  return inputs.session ? inputs.session->lines : none;
}

}  // namespace

TranscriptCoordinator::TranscriptCoordinator(QWidget& view)
    : textView_(new SelectableTranscriptTextView(document_.text(), document_.layout(), &view)) {
  const QScrollBar* bar = textView_->verticalScrollBar();
  connect(bar, &QScrollBar::valueChanged, this, &TranscriptCoordinator::updateBottom);
  connect(bar, &QScrollBar::rangeChanged, this, &TranscriptCoordinator::updateBottom);
  connect(textView_, &SelectableTranscriptTextView::selectionSettled, this,
          &TranscriptCoordinator::retry);
  connect(&document_.text(), &QTextDocument::contentsChange, this, [this] {
    if (document_.isIntact()) return;
    QMetaObject::invokeMethod(this, &TranscriptCoordinator::refresh, Qt::QueuedConnection);
  });
  connect(&Localization::shared(), &Localization::languageChanged, this,
          &TranscriptCoordinator::refresh);
}

TranscriptCoordinator::~TranscriptCoordinator() {
  delete textView_;
}

void TranscriptCoordinator::update(const TranscriptInputs& inputs, const TranscriptChange& change) {
  const bool restyled = !presentation_ || inputs.captionStyle != inputs_.captionStyle;
  inputs_ = inputs;
  if (restyled) textView_->setCaptionStyle(inputs_.captionStyle);
  apply(isHeld_ ? TranscriptChange() : change);
}

void TranscriptCoordinator::refresh() {
  textView_->setAccessibleName(L("Caption Text", "자막 본문"));
  if (presentation_) apply({});
}

void TranscriptCoordinator::retry() {
  // Not from inside the text view's own handling of the event.
  if (isHeld_)
    QMetaObject::invokeMethod(this, &TranscriptCoordinator::refresh, Qt::QueuedConnection);
}

TranscriptCoordinator::Presentation TranscriptCoordinator::presentation() const {
  return {inputs_.session ? inputs_.session->id : QUuid(), inputs_.content, inputs_.language,
          inputs_.showsMetadata};
}

void TranscriptCoordinator::apply(const TranscriptChange& change) {
  if (!presentation_) textView_->setAccessibleName(L("Caption Text", "자막 본문"));
  const bool sameSession = presentation_ == presentation();
  if (!sameSession) clearSelectionInPlace();
  const bool selecting = textView_->hasSelection() || textView_->isSelectingText();
  const bool pins = inputs_.followsLatest && textView_->isAtBottom(kBottomSlack) && !selecting;

  // Not the text view's own palette, which follows a change of the desktop's only later.
  const TranscriptFormats formats(inputs_, textView_->parentWidget()->palette());
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
      for (const Replacement& replacement : changes) show(replacement);
      putCursorAt(location);
    };
    if (sameSession) {
      textView_->keepPlace(pins, replace);
    } else {
      textView_->keepOrigin(pins, replace);
    }
    textView_->updatePendingIndicators();
  }
  obeyJump();
  updateBottom();
}

void TranscriptCoordinator::clearSelectionInPlace() {
  // Moving the cursor would scroll to it, before it is known where the reader was.
  const int origin = textView_->verticalScrollBar()->value();
  textView_->clearSelection();
  textView_->verticalScrollBar()->setValue(origin);
}

void TranscriptCoordinator::putCursorAt(int location) {
  QTextCursor cursor(document_.text().firstBlock());
  cursor.setPosition(std::min(location, document_.text().characterCount() - 1));
  if (textView_->textCursor() != cursor) textView_->setTextCursor(cursor);
}

std::size_t TranscriptCoordinator::paragraphsBefore(std::size_t line) const {
  const auto end = lineSizes_.begin() + static_cast<std::ptrdiff_t>(line);
  return std::accumulate(lineSizes_.begin(), end, std::size_t{0});
}

TranscriptCoordinator::Replacement TranscriptCoordinator::replacementOf(
    std::size_t firstLine, std::size_t lineCount, std::span<const Line> lines) const {
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

/// From the last to the first, so that each still finds its place when those before are shown.
std::vector<TranscriptCoordinator::Replacement> TranscriptCoordinator::replacements(
    const TranscriptChange& change) const {
  const std::span<const Line> lines(linesOf(inputs_));
  const std::optional<std::vector<std::size_t>> changed = changedLines(change);
  const std::size_t kept = changed ? lineSizes_.size() : 0;

  // What follows the lines that were shown before, or everything.
  Replacement tail = replacementOf(kept, lineSizes_.size() - kept, lines.subspan(kept));
  tail.count = document_.shown().size() - tail.first;
  appendDraft(inputs_, tail.paragraphs);
  std::vector<Replacement> result;
  result.push_back(std::move(tail));
  if (changed) {
    for (const std::size_t line : *changed) {
      result.push_back(replacementOf(line, 1, lines.subspan(line, 1)));
    }
  }
  return result;
}

/// The shown lines that may differ, from the last to the first; none: any may.
std::optional<std::vector<std::size_t>> TranscriptCoordinator::changedLines(
    const TranscriptChange& change) const {
  const std::vector<Line>& lines = linesOf(inputs_);
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
    if (changed.size() > kManyLines) return {};
  }
  std::ranges::sort(changed, std::greater());
  return changed;
}

void TranscriptCoordinator::show(const Replacement& replacement) {
  document_.replace(replacement.first, replacement.count, replacement.paragraphs);
  const auto at = lineSizes_.begin() + static_cast<std::ptrdiff_t>(replacement.firstLine);
  const auto after = lineSizes_.erase(at, at + static_cast<std::ptrdiff_t>(replacement.lineCount));
  lineSizes_.insert(after, replacement.lineSizes.begin(), replacement.lineSizes.end());
}

void TranscriptCoordinator::obeyJump() {
  if (std::exchange(lastJump_, inputs_.jumpToLatest) != inputs_.jumpToLatest) {
    textView_->scrollToEnd();
  }
}

void TranscriptCoordinator::setHeld(bool held) {
  if (std::exchange(isHeld_, held) != held) Q_EMIT isHeldChanged(held);
}

void TranscriptCoordinator::updateBottom() {
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
