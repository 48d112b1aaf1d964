// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/caption_overlays.h"

#include "captions/caption_view_model.h"
#include "language/localization.h"
#include "ui/caption/caption_overlay_icon.h"
#include "ui/caption/copy_transcript_button.h"

#include <QHBoxLayout>
#include <QPainter>

namespace velun {

CaptionOverlays::CaptionOverlays(CaptionViewModel& model, Clock& clock, QWidget* parent)
    : QWidget(parent),
      model_(model),
      keptOnTop_(new CaptionOverlayIcon(QStringLiteral("pin"), this)),
      hiddenFromSharing_(new CaptionOverlayIcon(QStringLiteral("eye.slash"), this)),
      copyButton_(
          new CopyTranscriptButton([&model] { return model.captionText(); }, true, clock, this)) {
  auto* row = new QHBoxLayout(this);
  row->setContentsMargins(4, 2, 2, 2);
  row->setSpacing(2);
  row->setSizeConstraint(QLayout::SetFixedSize);
  row->addWidget(keptOnTop_);
  row->addWidget(hiddenFromSharing_);
  row->addWidget(copyButton_);
  const AppSettings& settings = model.settings();
  connect(&settings, &AppSettings::keepOnTopChanged, this, &CaptionOverlays::present);
  connect(&settings, &AppSettings::hideFromScreenSharingChanged, this, &CaptionOverlays::present);
  connect(&model, &CaptionViewModel::sessionChanged, this, &CaptionOverlays::present);
  connect(&model, &CaptionViewModel::volatileTextChanged, this, &CaptionOverlays::present);
  connect(&Localization::shared(), &Localization::languageChanged, this, &CaptionOverlays::present);
  present();
}

void CaptionOverlays::present() {
  keptOnTop_->setVisible(model_.settings().keepOnTop());
  presentLevel();
  hiddenFromSharing_->setVisible(model_.settings().hideFromScreenSharing());
  presentHiding();
  copyButton_->setEnabled(!model_.lines().empty() || !model_.volatileText().isEmpty());
}

void CaptionOverlays::presentLevel() {
  const bool isImpossible = capabilities_.hidesPlaces && !capabilities_.keepsOnTop;
  keptOnTop_->setSymbol(isImpossible ? QStringLiteral("exclamationmark.triangle")
                                     : QStringLiteral("pin"));
  keptOnTop_->setLabel(isImpossible ? L("This desktop cannot keep the window above others",
                                        "이 데스크톱에서는 이 창을 다른 창 위에 둘 수 없습니다")
                                    : L("Kept above other windows", "다른 창 위에 표시 중"));
}

void CaptionOverlays::presentHiding() {
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

void CaptionOverlays::setCapabilities(const DesktopCapabilities& capabilities) {
  capabilities_ = capabilities;
  presentLevel();
  presentHiding();
}

void CaptionOverlays::setColors(const CaptionColors& colors) {
  colors_ = colors;
  update();
}

void CaptionOverlays::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(colors_.edge);
  painter.setBrush(colors_.raised);
  painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 9, 9);
}

}  // namespace velun
