// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/copy_transcript_button.h"

#include "language/localization.h"
#include "ui/caption/caption_appearance.h"
#include "ui/common/symbol.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QPainter>

namespace velun {

namespace {

constexpr std::chrono::seconds kCopiedTime{2};
constexpr double kCorner = 6;

}  // namespace

CopyTranscriptButton::CopyTranscriptButton(std::function<QString()> text, bool captionStyle,
                                           Clock& clock, QWidget* parent)
    : PanelButton(parent), text_(std::move(text)), captionStyle_(captionStyle), clock_(clock) {
  setAutoRaise(true);
  setToolButtonStyle(captionStyle ? Qt::ToolButtonIconOnly : Qt::ToolButtonTextBesideIcon);
  connect(this, &QToolButton::clicked, this, &CopyTranscriptButton::copy);
  connect(&Localization::shared(), &Localization::languageChanged, this,
          &CopyTranscriptButton::present);
  present();
}

void CopyTranscriptButton::paintEvent(QPaintEvent* event) {
  if (!captionStyle_) return PanelButton::paintEvent(event);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  paintGround(painter, 0, kCorner);
  QRect symbol(QPoint(), iconSize());
  symbol.moveCenter(rect().center());
  icon().paint(&painter, symbol, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
}

void CopyTranscriptButton::copy() {
  QGuiApplication::clipboard()->setText(text_());
  copied_ = true;
  present();
  reset_ = clock_.callAfter(kCopiedTime, [this] {
    copied_ = false;
    present();
  });
}

void CopyTranscriptButton::present() {
  const QString label = copied_ ? L("Copied", "복사됨") : L("Copy All", "전체 복사");
  setIcon(symbolIcon(copied_ ? QStringLiteral("checkmark") : QStringLiteral("doc.on.doc"),
                     captionStyle_ ? CaptionAppearance::symbol : QColor()));
  setText(label);
  setToolTip(label);
  setAccessibleName(label);
}

}  // namespace velun
