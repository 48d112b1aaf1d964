// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/download_offer_view.h"

#include "captions/caption_view_model.h"
#include "language/localization.h"
#include "ui/caption/caption_appearance.h"
#include "ui/caption/caption_button.h"
#include "ui/caption/thin_progress_bar.h"
#include "ui/caption/transcript_formats.h"
#include "ui/common/accessible_role.h"
#include "ui/common/download_text.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <utility>

namespace velun {

namespace {

using Stage = ModelState::Stage;

constexpr double kTextSize = 12;
constexpr int kGap = 6;

}  // namespace

DownloadOfferView::DownloadOfferView(CaptionViewModel& model, BetterCaptions* better,
                                     QWidget* parent)
    : QWidget(parent),
      model_(model),
      better_(better),
      text_(new QLabel(this)),
      progress_(new ThinProgressBar(this)),
      main_(new CaptionButton(this)),
      other_(new CaptionButton(this)) {
  arrange();
  if (better_) connect(better_, &BetterCaptions::changed, this, &DownloadOfferView::present);
  connect(&model.settings(), &AppSettings::localeIDChanged, this,
          [this] { asksAboutMeter_ = false; });
  connect(&Localization::shared(), &Localization::languageChanged, this,
          &DownloadOfferView::present);
  connect(main_, &CaptionButton::clicked, this, &DownloadOfferView::act);
  connect(other_, &CaptionButton::clicked, this, &DownloadOfferView::withdraw);
  present();
}

void DownloadOfferView::arrange() {
  setAccessibleRole(*text_, QAccessible::Notification);
  text_->setFont(systemFont(kTextSize));
  text_->setAlignment(Qt::AlignCenter);
  text_->setWordWrap(true);
  text_->setTextFormat(Qt::PlainText);
  QPalette colors = text_->palette();
  colors.setColor(QPalette::WindowText, CaptionAppearance::secondaryText);
  text_->setPalette(colors);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kGap);
  column->addWidget(text_);
  column->addWidget(progress_, 0, Qt::AlignHCenter);
  auto* row = new QHBoxLayout;
  row->setSpacing(kGap);
  row->addStretch(1);
  row->addWidget(main_);
  row->addWidget(other_);
  row->addStretch(1);
  column->addLayout(row);
}

void DownloadOfferView::setColors(const CaptionColors& colors) {
  main_->setColors(colors);
  other_->setColors(colors);
}

void DownloadOfferView::present() {
  const bool isOffered = better_ && better_->offer();
  const bool wasOffered = !isHidden();
  setVisible(isOffered);
  if (wasOffered != isOffered) Q_EMIT shownChanged();
  if (!isOffered) return;
  presentOffer(*better_->offer());
  const bool isNews = std::exchange(stage_, better_->offer()->state.stage) != stage_;
  if (isNews && text_->isVisible()) announce(*text_);
}

void DownloadOfferView::presentOffer(const BetterCaptions::Offer& offer) {
  const ModelState& state = offer.state;
  progress_->setVisible(state.isBusy() || state.stage == Stage::paused);
  progress_->setMaximum(1000);
  progress_->setValue(
      state.totalBytes > 0 ? static_cast<int>(1000 * state.doneBytes / state.totalBytes) : 0);
  progress_->setAccessibleName(L("Download", "다운로드"));
  showText(downloadText(state));
  switch (state.stage) {
    case Stage::absent:
      return presentUntouched(offer);
    case Stage::waiting:
    case Stage::downloading:
      return showButtons(L("Pause", "일시 정지"), L("Cancel", "취소"));
    case Stage::paused:
      return showButtons(L("Continue", "계속"), L("Cancel", "취소"));
    case Stage::verifying:
      return showButtons({}, L("Cancel", "취소"));
    case Stage::failed:
      return showButtons(L("Try Again", "다시 시도"), L("Not Now", "나중에"));
    case Stage::installed:
      showText(offer.isNeeded
                   ? L("Captions are ready.", "자막을 사용할 수 있습니다.")
                   : L("Better captions are ready.", "더 나은 자막을 사용할 수 있습니다."));
      return showButtons({}, {});
  }
}

void DownloadOfferView::presentUntouched(const BetterCaptions::Offer& offer) {
  const QString size = megabytesText(offer.bytes);
  const QString notNow = offer.isNeeded && !asksAboutMeter_ ? QString() : L("Not Now", "나중에");
  if (offer.needsAgreement) {
    showText(L("Captions in this language need a model whose license you have to read first.",
               "이 언어의 자막을 사용하려면 먼저 모델의 라이선스를 읽어야 합니다."));
    showButtons(L("Languages & Models…", "언어 및 모델…"), {});
  } else if (asksAboutMeter_) {
    showText(L("This connection is metered.", "데이터 사용량에 따라 요금이 부과되는 연결입니다."));
    showButtons(L("Download %1 Anyway", "그래도 %1 다운로드").arg(size), notNow);
  } else if (offer.isNeeded) {
    showText(offer.isSuitable
                 ? L("Captions in this language need a download.",
                     "이 언어의 자막을 사용하려면 다운로드가 필요합니다.")
                 : L("Captions in this language need a large model. They may be slow on this "
                     "computer.",
                     "이 언어의 자막에는 큰 모델이 필요합니다. 이 컴퓨터에서는 느릴 수 있습니다."));
    showButtons(L("Download %1", "%1 다운로드").arg(size), notNow);
  } else {
    showButtons(L("Better captions: download %1", "더 나은 자막: %1 다운로드").arg(size), notNow);
  }
}

void DownloadOfferView::showText(const QString& text) {
  text_->setText(text);
  text_->setAccessibleName(text);
  text_->setVisible(!text.isEmpty());
}

void DownloadOfferView::showButtons(const QString& mainText, const QString& otherText) {
  // Qt would move the focus of a hidden button into the panel's header and show it.
  if (mainText.isEmpty() && main_->hasFocus()) other_->setFocus();
  if (otherText.isEmpty() && other_->hasFocus()) parentWidget()->setFocus();
  for (const auto& [button, text] : {std::pair(main_, mainText), std::pair(other_, otherText)}) {
    button->setText(text);
    // As it is: of the text Qt would leave out an ampersand.
    if (!text.isEmpty()) button->setAccessibleName(text);
    button->updateGeometry();
    button->setVisible(!text.isEmpty());
  }
}

void DownloadOfferView::act() {
  if (!better_->offer()) return;
  if (better_->offer()->needsAgreement) return Q_EMIT modelsRequested();
  const Stage stage = better_->offer()->state.stage;
  if (stage == Stage::waiting || stage == Stage::downloading) return better_->pause();
  if (stage == Stage::absent && better_->isMetered() && !std::exchange(asksAboutMeter_, true)) {
    return present();
  }
  asksAboutMeter_ = false;
  better_->download();
}

void DownloadOfferView::withdraw() {
  if (!better_->offer()) return;
  const BetterCaptions::Offer offer = *better_->offer();
  const bool wasAskedAboutMeter = std::exchange(asksAboutMeter_, false);
  if (offer.state.isBusy() || offer.state.stage == Stage::paused) {
    better_->cancel();
  } else if (wasAskedAboutMeter) {
    present();
  } else {
    better_->decline();
  }
}

}  // namespace velun
