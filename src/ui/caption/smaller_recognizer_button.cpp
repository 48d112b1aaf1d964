// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/smaller_recognizer_button.h"

#include "language/localization.h"
#include "ui/caption/caption_button.h"
#include "ui/caption/transcript_layout.h"

#include <QHBoxLayout>

namespace velun {

namespace {

constexpr int kGap = 6;

}  // namespace

SmallerRecognizerButton::SmallerRecognizerButton(SmallerRecognizer* smaller, QWidget* parent)
    : QWidget(parent), smaller_(smaller), button_(new CaptionButton(this)) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(TranscriptLayout::horizontalInset, 0, TranscriptLayout::horizontalInset,
                          kGap);
  row->addWidget(button_);
  row->addStretch(1);
  connect(button_, &CaptionButton::clicked, this, &SmallerRecognizerButton::act);
  if (smaller_) connect(smaller_, &SmallerRecognizer::changed, this, [this] { present(); });
  connect(&Localization::shared(), &Localization::languageChanged, this,
          &SmallerRecognizerButton::present);
  present();
}

void SmallerRecognizerButton::setColors(const CaptionColors& colors) {
  button_->setColors(colors);
}

int SmallerRecognizerButton::neededHeight() const {
  return smaller_ && smaller_->offer() ? sizeHint().height() : 0;
}

void SmallerRecognizerButton::present() {
  const bool isOffered = smaller_ && smaller_->offer();
  // Qt would move the focus of a hidden button into the panel's header and show it.
  if (!isOffered && button_->hasFocus()) parentWidget()->setFocus();
  setVisible(isOffered);
  const bool isInstalled = isOffered && smaller_->offer()->isInstalled;
  // Screen readers also know hidden buttons, so it always has a name.
  button_->setText(isInstalled ? L("Use “%1”", "‘%1’ 사용").arg(smaller_->offer()->title)
                               : L("Choose a Smaller Model…", "더 작은 모델 선택…"));
  button_->updateGeometry();
  Q_EMIT offerChanged();
}

void SmallerRecognizerButton::act() {
  if (!smaller_->offer()) return;
  const bool isInstalled = smaller_->offer()->isInstalled;
  smaller_->accept();
  if (!isInstalled) Q_EMIT modelsRequested();
}

}  // namespace velun
