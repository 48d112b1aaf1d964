// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/header_state.h"

#include "captions/caption_view_model.h"
#include "language/localization.h"
#include "ui/caption/copy_transcript_button.h"
#include "ui/caption/header_state_icon.h"

#include <QHBoxLayout>

namespace velun {

HeaderState::HeaderState(CaptionViewModel& model, Clock& clock, QWidget* parent)
    : QWidget(parent),
      model_(model),
      keptOnTop_(new HeaderStateIcon(QStringLiteral("pin"), this)),
      hiddenFromSharing_(new HeaderStateIcon(QStringLiteral("eye.slash"), this)),
      copyButton_(
          new CopyTranscriptButton([&model] { return model.captionText(); }, true, clock, this)) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(2);
  row->addWidget(keptOnTop_);
  row->addWidget(hiddenFromSharing_);
  row->addWidget(copyButton_);
  const AppSettings& settings = model.settings();
  connect(&settings, &AppSettings::keepOnTopChanged, this, &HeaderState::present);
  connect(&settings, &AppSettings::hideFromScreenSharingChanged, this, &HeaderState::present);
  connect(&model, &CaptionViewModel::sessionChanged, this, &HeaderState::presentCopying);
  connect(&model, &CaptionViewModel::volatileTextChanged, this, &HeaderState::presentCopying);
  connect(&Localization::shared(), &Localization::languageChanged, this, &HeaderState::present);
  present();
}

void HeaderState::present() {
  keptOnTop_->setVisible(model_.settings().keepOnTop());
  presentLevel();
  hiddenFromSharing_->setVisible(model_.settings().hideFromScreenSharing());
  presentHiding();
  presentCopying();
}

/// Alone on each draft: setting a name again tells screen readers that it has changed.
void HeaderState::presentCopying() {
  copyButton_->setEnabled(!model_.lines().empty() || !model_.volatileText().isEmpty());
}

void HeaderState::presentLevel() {
  const bool isImpossible = capabilities_.hidesPlaces && !capabilities_.keepsOnTop;
  keptOnTop_->setSymbol(isImpossible ? QStringLiteral("exclamationmark.triangle")
                                     : QStringLiteral("pin"));
  keptOnTop_->setLabel(isImpossible ? L("This desktop cannot keep the window above others",
                                        "이 데스크톱에서는 이 창을 다른 창 위에 둘 수 없습니다")
                                    : L("Kept above other windows", "다른 창 위에 표시 중"));
}

void HeaderState::presentHiding() {
  const auto show = [this](const QString& symbol, const QString& label) {
    hiddenFromSharing_->setSymbol(symbol);
    hiddenFromSharing_->setLabel(label);
  };
  const auto hidden = QStringLiteral("eye.slash");
  const auto visible = QStringLiteral("eye");
  switch (capabilities_.captureHiding) {
    case CaptureHiding::compositor:
      return show(hidden, L("Hidden from screen sharing", "화면 공유에서 숨김"));
    case CaptureHiding::whileCasting:
      return capabilities_.readsWithoutCast
                 ? show(visible, L("May be visible in screen sharing", "화면 공유에 보일 수 있음"))
                 : show(hidden,
                        L("Hidden while the screen is shared", "화면을 공유하는 동안 숨김"));
    case CaptureHiding::none:
      return show(visible, L("Visible in screen sharing", "화면 공유에 보임"));
  }
}

void HeaderState::setCapabilities(const DesktopCapabilities& capabilities) {
  capabilities_ = capabilities;
  presentLevel();
  presentHiding();
}

}  // namespace velun
