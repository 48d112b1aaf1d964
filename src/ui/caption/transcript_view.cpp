// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/transcript_view.h"

#include "language/localization.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/transcript_coordinator.h"
#include "ui/common/find_bar.h"

#include <QEvent>
#include <QVBoxLayout>

namespace velun {

TranscriptView::TranscriptView(QWidget* parent)
    : QWidget(parent), coordinator_(std::make_unique<TranscriptCoordinator>(*this)) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(&coordinator_->textView(), 1);
  setFocusProxy(&coordinator_->textView());
  connect(coordinator_.get(), &TranscriptCoordinator::atBottomChanged, this,
          &TranscriptView::atBottomChanged);
  connect(coordinator_.get(), &TranscriptCoordinator::isHeldChanged, this,
          &TranscriptView::isHeldChanged);
  connect(&coordinator_->textView(), &SelectableTranscriptTextView::findRequested, this,
          &TranscriptView::openFindBar);
}

TranscriptView::~TranscriptView() = default;

void TranscriptView::update(const TranscriptInputs& inputs, const TranscriptChange& change) {
  coordinator_->update(inputs, change);
}

bool TranscriptView::atBottom() const {
  return coordinator_->atBottom();
}

bool TranscriptView::isHeld() const {
  return coordinator_->isHeld();
}

void TranscriptView::clearSelection() {
  coordinator_->textView().clearSelection();
}

SelectableTranscriptTextView& TranscriptView::textView() const {
  return coordinator_->textView();
}

void TranscriptView::openFindBar() {
  if (!findBar_) {
    findBar_ = new FindBar(textView(), coordinator_->inputs().captionStyle, this);
    layout()->addWidget(findBar_);
  }
  findBar_->open();
}

void TranscriptView::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange || event->type() == QEvent::FontChange ||
      event->type() == QEvent::ApplicationFontChange) {
    coordinator_->refresh();
  }
  QWidget::changeEvent(event);
}

}  // namespace velun
